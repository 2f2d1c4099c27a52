/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameTags: how many frames are missing, by the numbers that a frame grabber gave to those that came
 */
#pragma once

#include <cstdint>
#include <optional>

namespace base {

/// Tags count on by one and begin anew behind the last 32-bit number. A failed frame has none, but it was counted. A
/// tag that goes back or stays is a grabber's own way of counting and says nothing.
class FrameTags {
public:
    void AddFailed() noexcept { ++m_failed; }
    /// Adds a frame; returns how many are missing between it and the one before.
    std::uint64_t Add(std::uint32_t tag) noexcept;

private:
    std::optional<std::uint32_t> m_last;
    std::uint64_t m_failed = 0;  // since the last tag
};

}  // namespace base
