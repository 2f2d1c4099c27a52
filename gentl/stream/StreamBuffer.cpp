/* SPDX-License-Identifier: Apache-2.0 */
/*
 * StreamBuffer: one announced buffer, and the frame in it
 */
#include "stream/StreamBuffer.h"

#include <algorithm>
#include <chrono>
#include <new>

#include "support/Identity.h"

namespace gentl {

namespace {

constexpr std::align_val_t kAlignment{64};  // of memory of the producer: a cache line

std::uint64_t BytesOfImage(const Vanto::GrabResult& result) {
    constexpr std::uint64_t kBitsPerByte = 8;
    if (result.width <= 0 || result.height <= 0 || result.pixelType == Vanto::PixelType_Undefined)
        return 0;
    const std::uint64_t bits = std::uint64_t{static_cast<std::uint32_t>(result.width)} *
                               static_cast<std::uint32_t>(result.height) * Vanto::BitPerPixel(result.GetPixelType());
    return (bits + kBitsPerByte - 1) / kBitsPerByte;
}

std::size_t Positive(std::int32_t number) {
    return static_cast<std::size_t>(std::max(number, 0));
}

std::uint64_t Now() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

}  // namespace

/// Of the consumer's memory, which must stand until the buffer is revoked.
StreamBuffer::StreamBuffer(void* base, std::size_t size, void* userPointer)
    : m_base(base), m_size(size), m_userPointer(userPointer), m_isOwned(false) {}

/// Of memory of its own; throws std::bad_alloc.
StreamBuffer::StreamBuffer(std::size_t size, void* userPointer)
    : m_base(::operator new(size, kAlignment)), m_size(size), m_userPointer(userPointer), m_isOwned(true) {}

StreamBuffer::~StreamBuffer() {
    if (m_isOwned)
        ::operator delete(m_base, kAlignment);
}

/// What queueing does: there is nothing in it.
void StreamBuffer::Empty() noexcept {
    m_hasData = false;
    m_frame = {};
}

/// Keeps what is known of the frame that was delivered into it.
void StreamBuffer::Fill(const Vanto::GrabResult& result, std::uint64_t frameId) {
    m_hasData = true;
    m_frame = {.id = frameId, .timestamp = Now(), .isFailed = !result.Succeeded()};
    if (m_frame.isFailed)
        return;
    m_frame.bytes = result.payloadSize;
    m_frame.dataBytes = std::max(result.payloadSize, BytesOfImage(result));
    m_frame.width = Positive(result.width);
    m_frame.height = Positive(result.height);
    m_frame.offsetX = Positive(result.offsetX);
    m_frame.offsetY = Positive(result.offsetY);
    m_frame.pixelType = result.pixelType;
}

/**
 * \brief The value of an information command
 * \throw GenTLError NOT_AVAILABLE for what a buffer without a frame does not have, NOT_IMPLEMENTED
 */
Info StreamBuffer::GetInfo(BUFFER_INFO_CMD command) const {
    switch (command) {
        case BUFFER_INFO_BASE:
            return m_base;
        case BUFFER_INFO_SIZE:
            return SizeValue{m_size};
        case BUFFER_INFO_USER_PTR:
            return m_userPointer;
        case BUFFER_INFO_NEW_DATA:
            return BoolValue{m_hasData};
        case BUFFER_INFO_IS_QUEUED:
            return BoolValue{m_state != BufferState::kUnqueued};
        case BUFFER_INFO_IS_ACQUIRING:  // a frame is copied as a whole once it is there
        case BUFFER_INFO_CONTAINS_CHUNKDATA:
        case BUFFER_INFO_IS_COMPOSITE:
            return BoolValue{false};
        case BUFFER_INFO_IS_INCOMPLETE:
            return BoolValue{IsIncomplete()};
        case BUFFER_INFO_DATA_LARGER_THAN_BUFFER:
            return BoolValue{m_hasData && m_frame.dataBytes > m_size};
        case BUFFER_INFO_TLTYPE:
            return std::string(kTransportType);
        case BUFFER_INFO_SIZE_FILLED:
            return SizeValue{static_cast<std::size_t>(m_frame.bytes)};
        case BUFFER_INFO_DATA_SIZE:
            return SizeValue{static_cast<std::size_t>(m_frame.dataBytes)};
        case BUFFER_INFO_IMAGEPRESENT:
            return BoolValue{m_hasData && !m_frame.isFailed};
        case BUFFER_INFO_PAYLOADTYPE:
            return SizeValue{PAYLOAD_TYPE_IMAGE};
        default:
            return GetFrameInfo(command);
    }
}

Info StreamBuffer::GetFrameInfo(BUFFER_INFO_CMD command) const {
    if (command < 0 || command > BUFFER_INFO_IS_COMPOSITE)
        ThrowUnknownCommand(command);
    if (!m_hasData)
        ThrowNotAvailable(command);
    switch (command) {
        case BUFFER_INFO_FRAMEID:
            return m_frame.id;
        case BUFFER_INFO_TIMESTAMP:
        case BUFFER_INFO_TIMESTAMP_NS:
            return m_frame.timestamp;
        case BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE:
            return SizeValue{0};
        default:
            return GetImageInfo(command);
    }
}

Info StreamBuffer::GetImageInfo(BUFFER_INFO_CMD command) const {
    if (m_frame.isFailed)
        ThrowNotAvailable(command);
    const bool hasFormat = m_frame.pixelType != Vanto::PixelType_Undefined;
    switch (command) {
        case BUFFER_INFO_WIDTH:
            return SizeValue{m_frame.width};
        case BUFFER_INFO_HEIGHT:
        case BUFFER_INFO_DELIVERED_IMAGEHEIGHT:
            return SizeValue{m_frame.height};
        case BUFFER_INFO_XOFFSET:
            return SizeValue{m_frame.offsetX};
        case BUFFER_INFO_YOFFSET:
            return SizeValue{m_frame.offsetY};
        case BUFFER_INFO_XPADDING:
        case BUFFER_INFO_YPADDING:
        case BUFFER_INFO_IMAGEOFFSET:
            return SizeValue{0};
        case BUFFER_INFO_PIXELFORMAT:
            return hasFormat ? std::uint64_t{static_cast<std::uint32_t>(m_frame.pixelType)} : std::uint64_t{0};
        case BUFFER_INFO_PIXELFORMAT_NAMESPACE:
            return std::uint64_t{hasFormat ? PIXELFORMAT_NAMESPACE_PFNC_32BIT : PIXELFORMAT_NAMESPACE_UNKNOWN};
        case BUFFER_INFO_PIXEL_ENDIANNESS:
            return std::int32_t{PIXELENDIANNESS_LITTLE};
        default:
            ThrowNotAvailable(command);
    }
}

/// An ordinary buffer is one segment.
Info StreamBuffer::GetSegmentInfo(SEGMENT_INFO_CMD command) const {
    switch (command) {
        case SEGMENT_INFO_BASE:
            return m_base;
        case SEGMENT_INFO_SIZE:
            return SizeValue{m_size};
        case SEGMENT_INFO_IS_INCOMPLETE:
            return BoolValue{IsIncomplete()};
        case SEGMENT_INFO_SIZE_FILLED:
            return SizeValue{static_cast<std::size_t>(m_frame.bytes)};
        case SEGMENT_INFO_DATA_SIZE:
            return SizeValue{static_cast<std::size_t>(m_frame.dataBytes)};
        default:
            ThrowUnknownCommand(command);
    }
}

}  // namespace gentl
