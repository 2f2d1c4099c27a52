/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameLook: what there is to be seen in an image, in numbers
 */
#include "images/FrameLook.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "images/Samples.h"

namespace tools {

SampleStatistics StatisticsOf(const std::vector<std::uint8_t>& pnm) {
    const Samples samples(pnm);
    const std::size_t count = samples.Count();
    SampleStatistics statistics{.least = std::numeric_limits<unsigned>::max()};
    double sum = 0.0;
    std::size_t saturated = 0;
    for (std::size_t index = 0; index < count; ++index) {
        const unsigned sample = samples.At(index);
        statistics.least = std::min(statistics.least, sample);
        statistics.most = std::max(statistics.most, sample);
        saturated += sample >= samples.White() ? 1 : 0;
        sum += sample;
    }
    statistics.mean = sum / static_cast<double>(std::max<std::size_t>(count, 1));
    statistics.saturated = static_cast<double>(saturated) / static_cast<double>(std::max<std::size_t>(count, 1));
    return statistics;
}

std::string StatisticsText(const SampleStatistics& statistics) {
    return fmt::format("min {}, mean {:.1f}, max {}, {:.1f}% saturated", statistics.least, statistics.mean,
                       statistics.most, statistics.saturated * 100.0);
}

}  // namespace tools
