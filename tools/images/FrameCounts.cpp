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
        m_tags.AddFailed();
    }
    if (!result.Succeeded())
        return;
    m_last = std::chrono::steady_clock::now();
    if (m_delivered++ == 0)
        m_first = m_last;
    m_bytes += result.payloadSize;
    if (IsCut(result))
        ++m_cut;
    m_dropped += m_tags.Add(result.FrameTag());
}

}  // namespace tools
