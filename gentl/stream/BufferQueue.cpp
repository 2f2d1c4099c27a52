/* SPDX-License-Identifier: Apache-2.0 */
/*
 * BufferQueue: the announced buffers of a stream, its pools and counters
 */
#include "stream/BufferQueue.h"

#include <algorithm>
#include <cstring>

#include "support/GenTLError.h"

namespace gentl {

void BufferQueue::Announce(std::shared_ptr<StreamBuffer> buffer) {
    m_announced.push_back(std::move(buffer));
    m_input.reserve(m_announced.size());
    m_output.reserve(m_announced.size());
}

void BufferQueue::Revoke(const StreamBuffer& buffer) {
    std::erase_if(m_announced, [&](const auto& one) { return one.get() == &buffer; });
}

bool BufferQueue::IsAnnounced(const StreamBuffer& buffer) const {
    return std::ranges::any_of(m_announced, [&](const auto& one) { return one.get() == &buffer; });
}

/// Empties a buffer that is in no pool and puts it behind the others.
void BufferQueue::ToInput(StreamBuffer& buffer) {
    buffer.Empty();
    buffer.SetState(BufferState::kInput);
    m_input.push_back(&buffer);
}

/// The buffer that the frame grabber is to get next; null when there is none, or when no more frames are wanted.
StreamBuffer* BufferQueue::FeedOldest() {
    if (m_input.empty() || !MayFeed())
        return nullptr;
    StreamBuffer* const buffer = m_input.front();
    m_input.erase(m_input.begin());
    buffer->SetState(BufferState::kFed);
    ++m_fed;
    return buffer;
}

/// Buffers that the frame grabber gave back without a frame go before those that it did not have.
void BufferQueue::TakeBack(const std::vector<StreamBuffer*>& canceled) {
    for (StreamBuffer* const buffer : canceled)
        buffer->SetState(BufferState::kInput);
    m_fed -= canceled.size();
    m_input.insert(m_input.begin(), canceled.begin(), canceled.end());
}

void BufferQueue::ToOutput(StreamBuffer& buffer) {
    buffer.SetState(BufferState::kOutput);
    m_output.push_back(&buffer);
    ++m_fired;
}

void BufferQueue::InputToOutput() {
    for (StreamBuffer* const buffer : m_input)
        ToOutput(*buffer);
    m_input.clear();
}

void BufferQueue::InputToUnqueued() {
    for (StreamBuffer* const buffer : m_input)
        buffer->SetState(BufferState::kUnqueued);
    m_input.clear();
}

/// A frame that the frame grabber has delivered.
void BufferQueue::Deliver(StreamBuffer& buffer, const Vanto::GrabResult& result) {
    buffer.Fill(result, NextFrameId(result));
    --m_fed;
    ++m_delivered;
    ++m_started;
    ToOutput(buffer);
}

std::uint64_t BufferQueue::NextFrameId(const Vanto::GrabResult& result) {
    std::uint64_t lost = 0;
    if (result.Succeeded())
        lost = m_tags.Add(result.FrameTag());
    else
        m_tags.AddFailed();
    m_underrun += lost;
    m_started += lost;
    return m_frameId += lost + 1;
}

/// A new acquisition of so many frames.
void BufferQueue::StartCounting(std::uint64_t wanted) noexcept {
    m_wanted = wanted;
    m_delivered = 0;
    m_frameId = 0;
    m_tags = {};
}

void BufferQueue::TakeFrontLocked(void* target) {
    StreamBuffer* const buffer = m_output.front();
    m_output.erase(m_output.begin());
    buffer->SetState(BufferState::kUnqueued);
    const EVENT_NEW_BUFFER_DATA data{buffer->Handle(), buffer->UserPointer()};
    if (target != nullptr)
        std::memcpy(target, &data, sizeof data);
}

void BufferQueue::DiscardLocked() {
    for (StreamBuffer* const buffer : m_output)
        buffer->SetState(BufferState::kUnqueued);
    m_output.clear();
}

Info BufferQueue::Explain(EVENT_DATA_INFO_CMD command, const void* data, std::size_t size) const {
    EVENT_NEW_BUFFER_DATA entry{};
    if (size < sizeof entry)
        throw GenTLError(GC_ERR_INVALID_PARAMETER, "These are no data of the event NEW_BUFFER");
    std::memcpy(&entry, data, sizeof entry);
    switch (command) {
        case EVENT_DATA_ID:
            return static_cast<void*>(entry.BufferHandle);
        case EVENT_DATA_VALUE:
            return static_cast<void*>(entry.pUserPointer);
        case EVENT_DATA_NUMID:
            ThrowNotAvailable(command);
        default:
            ThrowUnknownCommand(command);
    }
}

}  // namespace gentl
