/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameCounts: what became of the frames of one grab
 */
#pragma once

#include <chrono>
#include <cstdint>

#include "vanto/FrameStream.h"

namespace tools {

/// What a stream counts, with the time from its first frame to its last one. Thread-bound.
class FrameCounts {
public:
    /// To be told after each frame.
    void Update(const Vanto::StreamCounts& counts) {
        if (counts.delivered != m_counts.delivered)
            m_last = std::chrono::steady_clock::now();
        if (m_counts.delivered == 0)
            m_first = m_last;
        m_counts = counts;
    }

    std::uint64_t Delivered() const noexcept { return m_counts.delivered; }  ///< frames in a buffer, cut ones too
    std::uint64_t Dropped() const noexcept { return m_counts.missed; }  ///< missing between two that were delivered
    std::uint64_t Cut() const noexcept { return m_counts.cut; }         ///< delivered, but not with all their bytes
    std::uint64_t Failed() const noexcept { return m_counts.failed; }   ///< arrived without usable data
    std::uint64_t Bytes() const noexcept { return m_counts.bytes; }
    /// Without the time until the first came, and whatever is done with frames.
    double Seconds() const noexcept { return std::chrono::duration<double>(m_last - m_first).count(); }

private:
    Vanto::StreamCounts m_counts;
    std::chrono::steady_clock::time_point m_first;
    std::chrono::steady_clock::time_point m_last;
};

}  // namespace tools
