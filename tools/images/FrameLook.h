/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameLook: what there is to be seen in an image, in numbers
 */
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tools {

/// Least, mean and greatest sample of an image and how many have the greatest value that there is.
struct SampleStatistics {
    unsigned least = 0;
    double mean = 0.0;
    unsigned most = 0;
    double saturated = 0.0;  ///< 0 to 1
};

/// \param[in] pnm An image as Vanto::AppendPnm makes it
SampleStatistics StatisticsOf(const std::vector<std::uint8_t>& pnm);
/// "min 3, mean 120.5, max 255, 0.2% saturated"
std::string StatisticsText(const SampleStatistics& statistics);

}  // namespace tools
