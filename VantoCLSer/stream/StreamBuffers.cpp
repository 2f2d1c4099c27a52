/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The application's buffers and where they are: free, waiting for a frame, filled
 */

#include "VantoCLSer/stream/StreamBuffers.h"

namespace Vanto {

namespace {

// One count for all stream grabbers of the process: a handle is never used again.
std::atomic<StreamBufferHandle> g_lastHandle{0};

}  // namespace

/**
 * \class CStreamBuffers
 * \brief Registry and queues of one stream grabber
 *
 * A buffer's record is shared: a delivery that is under way keeps it although the registry has forgotten it.
 */

/**
 * \brief Enter a buffer under a new handle
 */
StreamBuffer& CStreamBuffers::Register(void* address, std::uint64_t size) {
    auto buffer = std::make_shared<StreamBuffer>();
    buffer->result.handle = ++g_lastHandle;
    buffer->result.buffer = address;
    buffer->size = size;
    return *m_registry.emplace(buffer->result.handle, buffer).first->second;
}

CStreamBuffers::BufferPtr CStreamBuffers::Find(StreamBufferHandle handle) const {
    const auto found = m_registry.find(handle);
    return found != m_registry.end() ? found->second : nullptr;
}

/**
 * \brief Forget a buffer; a delivery that has taken it does not begin to fill it any more
 */
void CStreamBuffers::Erase(StreamBufferHandle handle) {
    const auto found = m_registry.find(handle);
    if (found == m_registry.end())
        return;
    found->second->isForgotten = true;
    m_registry.erase(found);
}

/**
 * \brief Forget all buffers
 */
void CStreamBuffers::Clear() noexcept {
    for (const auto& [handle, buffer] : m_registry)
        buffer->isForgotten = true;
    m_registry.clear();
}

/**
 * \brief Append to the buffers that wait for a frame
 *
 * Makes room for all that may become filled, so that a delivery never allocates.
 */
void CStreamBuffers::Queue(StreamBufferHandle handle) {
    m_filled.Reserve(m_filled.Size() + m_taken + m_empty.Size() + 1);
    m_empty.PushBack(handle);
}

/**
 * \brief Take the buffer that waits longest; PutFilled or ForgetTaken must follow
 */
StreamBufferHandle CStreamBuffers::TakeEmpty() noexcept {
    ++m_taken;
    return m_empty.PopFront();
}

void CStreamBuffers::PutFilled(StreamBufferHandle handle) {
    --m_taken;
    m_filled.PushBack(handle);
}

/**
 * \brief Move all buffers that wait for a frame, in their order, to the filled ones, as cancelled
 * \return false when none waited
 */
bool CStreamBuffers::CancelEmpty() {
    if (m_empty.IsEmpty())
        return false;
    while (!m_empty.IsEmpty()) {
        const StreamBufferHandle handle = m_empty.PopFront();
        if (const BufferPtr buffer = Find(handle))
            buffer->result.status = Canceled;
        m_filled.PushBack(handle);
    }
    return true;
}

}  // namespace Vanto
