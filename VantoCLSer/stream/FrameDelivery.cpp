/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Frames on their way from a plug-in into the buffers that wait for them
 */

#include "VantoCLSer/stream/FrameDelivery.h"

#include <algorithm>
#include <new>
#include <utility>

#include "VantoCLSer/base/Log.h"
#include "VantoCLSer/stream/FrameCopy.h"

namespace Vanto {

namespace {

constexpr std::uint32_t kUnreadableResult = 0xFFFFFFFF;

// Reading from the camera takes its time, and who is told there that it is gone may close the stream grabber: then the
// buffer's memory is not touched. A copy that has begun is waited for by Close.
void Fill(GrabResult& result, const FgFrame& frame, const StreamBuffer& buffer) {
    if (buffer.isForgotten)
        return;
    result.payloadSize = CopyFrame(frame, buffer.result.buffer, buffer.size);
    result.width = static_cast<std::int32_t>(frame.width);
    result.height = frame.lineCount;
    result.offsetX = std::max(result.offsetX, 0);
    result.offsetY = std::max(result.offsetY, 0);
    result.status = Grabbed;
    result.reservedX = 0;
    result.reservedY = 0;
    result.kind = 0;
    result.frameTag = frame.frameTag;
}

// A frame that has failed goes to the application also where there is no memory to say why.
void Describe(GrabResult& result, const char* failure) noexcept {
    try {
        result.errorDescription = failure;
    } catch (const std::bad_alloc&) {
        LogTrace(StreamLog(), tracelog::kError, "Exception while delivering a frame (%s)", failure);
    }
}

}  // namespace

/**
 * \brief Copy a frame into the buffer that waits longest
 * \param[in] frame The plug-in's; used until the operation returns. Null is logged.
 * \context Any thread of the plug-in; several at once
 */
void CFrameDelivery::Deliver(const FgFrame* frame) noexcept {
    try {
        const CDeliveryGate::Pass pass(m_gate);
        if (!pass)
            return;
        if (frame != nullptr)
            FillBuffer(*frame);
        else
            LogTrace(StreamLog(), tracelog::kError, "Invalid frame descriptor passed.");
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Exception while delivering a frame (%s)", error.what());
    }
}

// The image is copied without the grabber lock: nobody waits for a large copy.
void CFrameDelivery::FillBuffer(const FgFrame& frame) {
    StreamBufferHandle handle = 0;
    const CStreamBuffers::BufferPtr buffer = TakeEmptyBuffer(handle);
    if (!buffer)
        return;
    GrabResult filled;
    const bool isComplete = ReadFrameData(filled, frame, *buffer);
    if (isComplete) {
        // Only now: reading from the camera may call the application, whose thread may wait for delivery U, and U waits
        // for the buffer. And no longer: T that starts the plug-in holds the grabber lock, and the plug-in may deliver
        // there into the same buffer.
        const std::lock_guard filling(buffer->filling);
        Fill(filled, frame, *buffer);
    }
    PutFilledBuffer(handle, *buffer, std::move(filled));
}

CStreamBuffers::BufferPtr CFrameDelivery::TakeEmptyBuffer(StreamBufferHandle& handle) {
    const Lock lock(m_parts.lock);
    if (m_parts.state.Is(CGrabState::kCancelled)) {
        LogTrace(StreamLog(), tracelog::kError, "State is cancelled!");
        return nullptr;
    }
    if (m_parts.buffers.Empty().IsEmpty()) {
        LogTrace(StreamLog(), tracelog::kTrace, "Buffer underrun*!");
        return nullptr;
    }
    handle = m_parts.buffers.TakeEmpty();
    CStreamBuffers::BufferPtr buffer = m_parts.buffers.Find(handle);
    if (!buffer) {
        m_parts.buffers.ForgetTaken();
        LogTrace(StreamLog(), tracelog::kError, "Invalid Bufferhandle %p encountered", handle);
    }
    return buffer;
}

bool CFrameDelivery::ReadFrameData(GrabResult& result, const FgFrame& frame, const StreamBuffer& buffer) {
    const bool hasData = frame.data != nullptr || frame.dataSize == 0 || buffer.size == 0;
    if (hasData && ReadResultData(result, buffer))
        return true;
    result.status = GrabFailed;
    result.errorCode = kUnreadableResult;
    Describe(result, hasData ? "Failed to retrieve result specific data from device nodemap."
                             : "The frame grabber plug-in delivered a frame without data.");
    return false;
}

// Thread T that stops the plug-in waits for its deliveries, and may hold the lock of the camera's node map for which
// they wait: so does everybody who is told, in a node's callback or by a failed access, that the camera is gone.
bool CFrameDelivery::ReadResultData(GrabResult& result, const StreamBuffer& buffer) {
    if (!m_parts.device->IsOpen())
        m_parts.resultData.Forget();
    return m_parts.resultData.Read(result,
                                   [this, &buffer] { return buffer.isForgotten || m_parts.state.IsStopOverdue(); });
}

void CFrameDelivery::PutFilledBuffer(StreamBufferHandle handle, StreamBuffer& buffer, GrabResult&& filled) {
    {
        const Lock lock(m_parts.lock);
        filled.context = buffer.result.context;
        filled.handle = buffer.result.handle;
        filled.buffer = buffer.result.buffer;
        buffer.result = std::move(filled);
        if (m_parts.state.Is(CGrabState::kCancelled)) {
            m_parts.buffers.ForgetTaken();
            return;
        }
        m_parts.buffers.PutFilled(handle);
    }
    m_parts.isFilled.Signal();
}

}  // namespace Vanto
