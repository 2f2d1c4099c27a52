/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameData: one result of a stream grabber, and the memory that it is in
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "vanto/Frame.h"
#include "vanto/GrabResult.h"

namespace Vanto {

class StreamCore;

/// A registered piece of memory.
struct FrameBuffer {
    StreamBufferHandle handle = 0;
    std::unique_ptr<std::uint8_t[]> memory;
    std::size_t size = 0;
};

/// A number of a result, which is -1 where it is unknown.
inline std::uint32_t NotNegative(std::int32_t value) noexcept {
    return value > 0 ? static_cast<std::uint32_t>(value) : 0;
}

/// Whether a buffer lacks a part of the image; none of unknown size does.
inline bool IsCut(const GrabResult& result) noexcept {
    constexpr std::uint64_t kBitsPerByte = 8;
    const std::uint64_t bits =
        std::uint64_t{NotNegative(result.width)} * NotNegative(result.height) * BitPerPixel(result.GetPixelType());
    return result.payloadSize < (bits + kBitsPerByte - 1) / kBitsPerByte;
}

/// What a frame holds. When it goes, its buffer goes back to the stream, or away where the stream is gone.
class FrameData {
public:
    FrameData(const GrabResult& grabbed, FrameBuffer own, std::weak_ptr<StreamCore> from);
    ~FrameData();
    FrameData(const FrameData&) = delete;
    FrameData& operator=(const FrameData&) = delete;

    const GrabResult result;
    const FrameStatus status;
    const std::chrono::system_clock::time_point time = std::chrono::system_clock::now();
    FrameBuffer buffer;
    std::uint64_t number = 0;
    std::uint64_t missed = 0;

private:
    std::weak_ptr<StreamCore> m_stream;
};

}  // namespace Vanto
