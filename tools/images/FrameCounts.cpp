/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameCounts: what became of the frames of one grab
 */
#include "images/FrameCounts.h"

#include <algorithm>

namespace tools {

bool IsCut(const Vanto::GrabResult& result) noexcept {
    constexpr std::uint64_t kBitsPerByte = 8;
    if (result.width <= 0 || result.height <= 0)
        return false;
    const std::uint64_t bits = std::uint64_t{static_cast<std::uint32_t>(result.width)} *
                               static_cast<std::uint32_t>(result.height) * Vanto::BitPerPixel(result.GetPixelType());
    return result.payloadSize < (bits + kBitsPerByte - 1) / kBitsPerByte;
}

/// Cancelled buffers are no frames and count nowhere.
void FrameCounts::Add(const Vanto::GrabResult& result) {
    if (result.Status() == Vanto::GrabFailed) {
        ++m_failed;
        ++m_failedSinceLastTag;
    }
    if (!result.Succeeded())
        return;
    ++m_delivered;
    m_bytes += result.payloadSize;
    if (IsCut(result))
        ++m_cut;
    CountMissing(result.FrameTag());
}

// Tags count on by one and begin anew behind the last 32-bit number. A failed result has no tag, but its frame had one.
// A tag that goes back is a grabber's own way of counting and says nothing about missing frames.
void FrameCounts::CountMissing(std::uint32_t tag) noexcept {
    constexpr std::uint32_t kForward = 0x80000000;
    if (m_lastTag) {
        const std::uint32_t step = tag - *m_lastTag;
        if (step != 0 && step < kForward)
            m_dropped += (step - 1) - std::min<std::uint64_t>(step - 1, m_failedSinceLastTag);
    }
    m_lastTag = tag;
    m_failedSinceLastTag = 0;
}

}  // namespace tools
