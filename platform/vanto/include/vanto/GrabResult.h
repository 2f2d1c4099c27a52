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
    const void* context = nullptr;                  ///< what was passed to QueueBuffer
    StreamBufferHandle handle = 0;                  ///<  which buffer
    void* buffer = nullptr;                         ///<  its address
    std::int32_t status = Idle;                     ///<  an EGrabStatus
    std::uint32_t frameTag = 0;                     ///<  the frame grabber's own number of the frame
    std::int32_t kind = -1;                         ///< 0 for an image
    std::int32_t pixelType = PixelType_Undefined;   ///<  an EPixelType
    std::uint64_t reserved = 0;                     ///<  always 0
    std::int32_t width = -1;                        ///< pixels
    std::int32_t height = -1;                       ///< lines
    std::int32_t offsetX = -1;                      ///<  pixels
    std::int32_t offsetY = -1;                      ///<  lines
    std::int32_t reservedX = -1;                    ///<  0 for a frame
    std::int32_t reservedY = -1;                    ///<  0 for a frame
    std::uint64_t payloadSize = ~std::uint64_t{0};  ///< bytes in the buffer
    std::uint32_t errorCode = 0;                    ///<  0 unless the grab failed
    gcstring errorDescription;                      ///<  empty unless the grab failed

    /// Whether there is a frame in the buffer.
    bool Succeeded() const noexcept { return status == Grabbed; }
    /// What became of the buffer.
    EGrabStatus Status() const noexcept { return static_cast<EGrabStatus>(status); }
    /// Which buffer it is.
    StreamBufferHandle Handle() const noexcept { return handle; }
    /// The buffer's address.
    void* Buffer() const noexcept { return buffer; }
    /// What was passed to QueueBuffer.
    const void* Context() const noexcept { return context; }
    /// The frame grabber's own number of the frame.
    std::uint32_t FrameTag() const noexcept { return frameTag; }
    /// The type of its pixels.
    EPixelType GetPixelType() const noexcept { return static_cast<EPixelType>(pixelType); }
    /// Its width in pixels; -1 when there is no frame.
    std::int32_t GetWidth() const noexcept { return width; }
    /// Its height in lines; -1 when there is no frame.
    std::int32_t GetHeight() const noexcept { return height; }
    /// Where it lies on the sensor, in pixels; -1 when there is no frame.
    std::int32_t GetOffsetX() const noexcept { return offsetX; }
    /// Where it lies on the sensor, in lines; -1 when there is no frame.
    std::int32_t GetOffsetY() const noexcept { return offsetY; }
    /// Bytes of the frame in the buffer; all ones when there is no frame.
    std::uint64_t GetPayloadSize() const noexcept { return payloadSize; }
    /// 0 unless the grab failed.
    std::uint32_t GetErrorCode() const noexcept { return errorCode; }
    /// Why the grab failed; else empty.
    const gcstring& GetErrorDescription() const noexcept { return errorDescription; }
};

}  // namespace Vanto
