/* SPDX-License-Identifier: Apache-2.0 */
/*
 * BufferQueue: the announced buffers of a stream, its pools and counters
 */
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/FrameTags.h"
#include "events/EventQueue.h"
#include "stream/StreamBuffer.h"

namespace gentl {

/// Its output queue is what the event NEW_BUFFER delivers. All operations want the lock held; none of them waits or
/// calls anybody, so it is never held for long. In a steady acquisition nothing is allocated.
class BufferQueue : public EventQueue {
public:
    using Buffers = std::vector<std::shared_ptr<StreamBuffer>>;

    const Buffers& Announced() const noexcept { return m_announced; }
    void Announce(std::shared_ptr<StreamBuffer> buffer);
    void Revoke(const StreamBuffer& buffer);
    bool IsAnnounced(const StreamBuffer& buffer) const;

    void ToInput(StreamBuffer& buffer);
    StreamBuffer* FeedOldest();
    void TakeBack(const std::vector<StreamBuffer*>& canceled);
    void InputToOutput();
    void InputToUnqueued();
    void Deliver(StreamBuffer& buffer, const Vanto::GrabResult& result);

    /// The input pool, with what the frame grabber has.
    std::size_t CountQueued() const noexcept { return m_input.size() + m_fed; }

    void StartCounting(std::uint64_t wanted) noexcept;
    /// How many more frames may be fed.
    bool MayFeed() const noexcept { return m_fed < m_wanted - m_delivered; }
    bool IsDone() const noexcept { return m_delivered >= m_wanted; }
    std::uint64_t Delivered() const noexcept { return m_delivered; }
    std::uint64_t Underrun() const noexcept { return m_underrun; }
    std::uint64_t Started() const noexcept { return m_started; }

    std::size_t CountLocked() const override { return m_output.size(); }
    std::size_t FrontSizeLocked() const override { return sizeof(EVENT_NEW_BUFFER_DATA); }
    void TakeFrontLocked(void* target) override;
    void DiscardLocked() override;
    /// Frames that came before the registration wait in the output queue for it.
    void BeginLocked() override {}
    std::uint64_t FiredLocked() const override { return m_fired; }
    std::size_t MaxSize() const noexcept override { return sizeof(EVENT_NEW_BUFFER_DATA); }
    Info Explain(EVENT_DATA_INFO_CMD command, const void* data, std::size_t size) const override;

private:
    void ToOutput(StreamBuffer& buffer);
    std::uint64_t NextFrameId(const Vanto::GrabResult& result);

    Buffers m_announced;
    std::vector<StreamBuffer*> m_input;  // without what the frame grabber has; oldest first
    std::vector<StreamBuffer*> m_output;
    std::size_t m_fed = 0;
    std::uint64_t m_fired = 0;
    std::uint64_t m_wanted = 0;
    std::uint64_t m_delivered = 0;
    std::uint64_t m_underrun = 0;
    std::uint64_t m_started = 0;
    std::uint64_t m_frameId = 0;
    base::FrameTags m_tags;
};

}  // namespace gentl
