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

constexpr std::uint64_t kLargestSpan = std::numeric_limits<std::ptrdiff_t>::max();

// How far into its data a frame of one line or more may be read. The data size counts pixels, the gaps between lines
// come on top; but a size that ends before the last line begins is taken as the end of the memory.
std::uint64_t SourceSpan(const FgFrame& frame) noexcept {
    const auto linesBeforeLast = static_cast<std::uint64_t>(frame.lineCount) - 1;
    return linesBeforeLast > (frame.dataSize - 1) / frame.lineLength ? frame.dataSize : kLargestSpan;
}

void CopyLines(const FgFrame& frame, std::uint8_t* to, std::uint64_t remaining) noexcept {
    if (frame.lineLength == 0 || frame.lineCount <= 0)
        return;
    const auto* from = static_cast<const std::uint8_t*>(frame.data);
    std::uint64_t readable = SourceSpan(frame);
    for (std::int32_t line = 0; line < frame.lineCount && remaining != 0; ++line) {
        const std::uint64_t length = std::min({remaining, frame.lineLength, readable});
        std::memcpy(to, from, length);
        to += length;
        remaining -= length;
        if (readable <= frame.linePitch)
            return;
        readable -= frame.linePitch;
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
