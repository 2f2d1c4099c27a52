/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The application's buffers and where they are: free, waiting for a frame, filled
 */
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>

#include "VantoCLSer/stream/HandleQueue.h"
#include "os/LockName.h"

namespace Vanto {

/// One registered buffer. What it holds is guarded by the stream grabber's lock, but for \a filling and \a isForgotten.
struct StreamBuffer {
    GrabResult result;
    std::uint64_t size = 0;  ///< bytes
    std::mutex filling;      ///< held while a frame is copied: a buffer that is queued twice is filled by one at a time
    [[no_unique_address]] const os::LockName fillingName{&filling, "buffer"};
    std::atomic<bool> isForgotten{false};  ///< the memory is the application's again
};

/// Registry and queues of one stream grabber. Wants the stream grabber's lock.
class CStreamBuffers {
public:
    using BufferPtr = std::shared_ptr<StreamBuffer>;

    StreamBuffer& Register(void* address, std::uint64_t size);
    BufferPtr Find(StreamBufferHandle handle) const;
    void Erase(StreamBufferHandle handle);
    std::size_t Count() const noexcept { return m_registry.size(); }
    void Clear() noexcept;

    const CHandleQueue& Empty() const noexcept { return m_empty; }
    const CHandleQueue& Filled() const noexcept { return m_filled; }
    void Queue(StreamBufferHandle handle);
    StreamBufferHandle TakeEmpty() noexcept;
    void PutFilled(StreamBufferHandle handle);
    StreamBufferHandle FirstFilled() const noexcept { return m_filled.First(); }
    void TakeFilled() noexcept { m_filled.PopFront(); }
    void ForgetTaken() noexcept { --m_taken; }
    void ClearFilled() noexcept { m_filled.Clear(); }
    bool CancelEmpty();

private:
    std::map<StreamBufferHandle, BufferPtr> m_registry;
    CHandleQueue m_empty;
    CHandleQueue m_filled;
    std::size_t m_taken = 0;  // out of the one queue, not yet in the other
};

}  // namespace Vanto
