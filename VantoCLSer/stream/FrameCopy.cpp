/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Copies a delivered frame into a buffer
 */

#include "VantoCLSer/stream/FrameCopy.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace Vanto {

namespace {

// No object is larger: a pitch that leads further can't be one.
constexpr std::uint64_t kLargestSpan = std::numeric_limits<std::ptrdiff_t>::max();

// The data size counts pixels, and bounds them; the gaps between the lines come on top.
void CopyLines(const FgFrame& frame, std::uint8_t* to, std::uint64_t remaining) noexcept {
    if (frame.lineLength == 0 || frame.lineCount <= 0)
        return;
    const auto* from = static_cast<const std::uint8_t*>(frame.data);
    std::uint64_t span = kLargestSpan;
    for (std::int32_t line = 0; line < frame.lineCount && remaining != 0; ++line) {
        const std::uint64_t length = std::min({remaining, frame.lineLength, span});
        std::memcpy(to, from, length);
        to += length;
        remaining -= length;
        if (span <= frame.linePitch)
            return;
        span -= frame.linePitch;
        from += frame.linePitch;
    }
}

}  // namespace

std::uint64_t CopyFrame(const FgFrame& frame, void* buffer, std::uint64_t size) noexcept {
    const std::uint64_t bytes = std::min(frame.dataSize, size);
    if (bytes == 0)
        return 0;
    if (frame.linePitch == frame.lineLength)
        std::memcpy(buffer, frame.data, bytes);
    else
        CopyLines(frame, static_cast<std::uint8_t*>(buffer), bytes);
    return bytes;
}

}  // namespace Vanto
