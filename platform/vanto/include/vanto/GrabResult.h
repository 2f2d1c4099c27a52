/* SPDX-License-Identifier: Apache-2.0 */
/*
 * GrabResult: what became of one queued buffer
 */
#pragma once

#include <cstdint>

#include "vanto/PixelType.h"
#include "vanto/VantoTypes.h"

namespace Vanto {

/// Names a registered buffer; never 0, and never given out twice in a process.
using StreamBufferHandle = std::uint64_t;

/// What happened to a buffer; the numbers are part of the interface.
enum EGrabStatus : std::int32_t {
    Idle = 0,       ///< registered, not queued
    Queued = 1,     ///< waits for a frame
    Grabbed = 2,    ///< holds a frame
    Canceled = 3,   ///< was taken out of the queue without a frame
    GrabFailed = 4  ///< the frame came, but its data could not be read; see the error
};

/// The result of one grab. Field order and types are part of the interface. Numbers that are not known yet are -1.
struct GrabResult {
    const void* context = nullptr;  ///< what was passed to QueueBuffer
    StreamBufferHandle handle = 0;
    void* buffer = nullptr;
    std::int32_t status = Idle;
    std::uint32_t frameTag = 0;
    std::int32_t kind = -1;  ///< 0 for an image
    std::int32_t pixelType = PixelType_Undefined;
    std::uint64_t reserved = 0;
    std::int32_t width = -1;   ///< pixels
    std::int32_t height = -1;  ///< lines
    std::int32_t offsetX = -1;
    std::int32_t offsetY = -1;
    std::int32_t reservedX = -1;
    std::int32_t reservedY = -1;
    std::uint64_t payloadSize = ~std::uint64_t{0};  ///< bytes in the buffer
    std::uint32_t errorCode = 0;
    gcstring errorDescription;

    bool Succeeded() const noexcept { return status == Grabbed; }
    EGrabStatus Status() const noexcept { return static_cast<EGrabStatus>(status); }
    StreamBufferHandle Handle() const noexcept { return handle; }
    void* Buffer() const noexcept { return buffer; }
    const void* Context() const noexcept { return context; }
    std::uint32_t FrameTag() const noexcept { return frameTag; }
    EPixelType GetPixelType() const noexcept { return static_cast<EPixelType>(pixelType); }
    std::int32_t GetWidth() const noexcept { return width; }
    std::int32_t GetHeight() const noexcept { return height; }
    std::int32_t GetOffsetX() const noexcept { return offsetX; }
    std::int32_t GetOffsetY() const noexcept { return offsetY; }
    std::uint64_t GetPayloadSize() const noexcept { return payloadSize; }
    std::uint32_t GetErrorCode() const noexcept { return errorCode; }
    const gcstring& GetErrorDescription() const noexcept { return errorDescription; }
};

}  // namespace Vanto
