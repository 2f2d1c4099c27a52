/* SPDX-License-Identifier: Apache-2.0 */
/*
 * StreamBuffer: one announced buffer, and the frame in it
 */
#pragma once

#include <cstdint>
#include <memory>

#include "support/HandleTable.h"
#include "support/Info.h"
#include "vanto/GrabResult.h"

namespace gentl {

/// Where a buffer is. In all states but the first it is the producer's.
enum class BufferState {
    kUnqueued,  ///< the consumer's
    kInput,     ///< in the input pool
    kFed,       ///< in the input pool, and the frame grabber may fill it
    kOutput     ///< filled or flushed, waiting to be fetched
};

/// A frame in a buffer.
struct FrameFacts {
    std::uint64_t id = 0;
    std::uint64_t timestamp = 0;  ///< ns of the host's monotonic clock, when the producer got it
    std::uint64_t bytes = 0;      ///< written
    std::uint64_t dataBytes = 0;  ///< that would have been written into a buffer of any size
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t offsetX = 0;
    std::size_t offsetY = 0;
    std::int32_t pixelType = Vanto::PixelType_Undefined;
    bool isFailed = false;  ///< the frame came, but nothing could be made of it
};

/// Everything but the addresses is guarded by the lock of the stream's queue.
class StreamBuffer : public Object {
public:
    StreamBuffer(void* base, std::size_t size, void* userPointer);
    StreamBuffer(std::size_t size, void* userPointer);
    ~StreamBuffer() override;

    void* Base() const noexcept { return m_base; }
    std::size_t Size() const noexcept { return m_size; }
    void* UserPointer() const noexcept { return m_userPointer; }
    bool IsOwned() const noexcept { return m_isOwned; }

    BufferState State() const noexcept { return m_state; }
    void SetState(BufferState state) noexcept { m_state = state; }
    void Empty() noexcept;
    void Fill(const Vanto::GrabResult& result, std::uint64_t frameId);

    Info GetInfo(BUFFER_INFO_CMD command) const;
    Info GetSegmentInfo(SEGMENT_INFO_CMD command) const;

    Vanto::StreamBufferHandle grabberHandle = 0;

private:
    Info GetFrameInfo(BUFFER_INFO_CMD command) const;
    Info GetImageInfo(BUFFER_INFO_CMD command) const;
    bool IsIncomplete() const noexcept { return m_hasData && (m_frame.isFailed || m_frame.bytes < m_frame.dataBytes); }

    void* const m_base;
    const std::size_t m_size;
    void* const m_userPointer;
    const bool m_isOwned;
    BufferState m_state = BufferState::kUnqueued;
    bool m_hasData = false;
    FrameFacts m_frame;
};

}  // namespace gentl
