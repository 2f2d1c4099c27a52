/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts of frames, shown while a grab goes on
 */
#pragma once

#include <chrono>
#include <thread>

#include "images/FrameCounts.h"
#include "images/GrabProgress.h"

namespace tools_test {

using tools::FrameCounts;
using tools::GrabProgress;

inline FrameCounts CountsOf(int frames) {
    FrameCounts counts;
    Vanto::StreamCounts stream;
    for (int frame = 0; frame < frames; ++frame) {
        ++stream.delivered;
        stream.bytes += 1'000'000;
        counts.Update(stream);
    }
    return counts;
}

/// Shows the counts again and again for so long that they are not too fresh to be shown.
inline void ShowFor(GrabProgress& progress, const FrameCounts& counts, double seconds) {
    while (progress.Seconds() < seconds)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    progress.Show(counts);
}

}  // namespace tools_test
