/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameCounts: what became of the frames of one grab
 */
#pragma once

#include <chrono>
#include <cstdint>

#include "base/FrameTags.h"
#include "vanto/GrabResult.h"

namespace tools {

/// Counts results. Thread-bound.
class FrameCounts {
public:
    void Add(const Vanto::GrabResult& result);

    std::uint64_t Delivered() const noexcept { return m_delivered; }  ///< frames in a buffer, cut ones too
    std::uint64_t Dropped() const noexcept { return m_dropped; }      ///< missing between two that were delivered
    std::uint64_t Cut() const noexcept { return m_cut; }              ///< delivered, but not with all their bytes
    std::uint64_t Failed() const noexcept { return m_failed; }        ///< arrived without usable data
    std::uint64_t Bytes() const noexcept { return m_bytes; }
    /// From the first frame to the last one: without the time until the first came, and whatever is done with frames.
    double Seconds() const noexcept { return std::chrono::duration<double>(m_last - m_first).count(); }

private:
    std::uint64_t m_delivered = 0;
    std::uint64_t m_dropped = 0;
    std::uint64_t m_cut = 0;
    std::uint64_t m_failed = 0;
    std::uint64_t m_bytes = 0;
    std::chrono::steady_clock::time_point m_first;
    std::chrono::steady_clock::time_point m_last;
    base::FrameTags m_tags;
};

/// Whether a buffer lacks a part of the frame's image.
bool IsCut(const Vanto::GrabResult& result) noexcept;

}  // namespace tools
