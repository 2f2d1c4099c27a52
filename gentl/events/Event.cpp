/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Event: one registration of a consumer for the notifications of a module
 */
#include "events/Event.h"

#include <chrono>

#include "support/Memory.h"

namespace gentl {

Event::Event(EVENT_TYPE type, std::shared_ptr<EventQueue> queue) : m_type(type), m_queue(std::move(queue)) {
    const std::lock_guard lock(m_queue->Mutex());
    m_queue->BeginLocked();
    m_firedBefore = m_queue->FiredLocked();
}

bool Event::WaitLocked(std::unique_lock<std::mutex>& lock, std::uint64_t timeout) {
    const auto isReady = [this] { return m_unregistered || m_kills > 0 || m_queue->CountLocked() > 0; };
    if (timeout == 0 || isReady())
        return isReady();
    // Longer than this is for ever; the clock's range ends somewhere.
    constexpr std::uint64_t kLongest = 1000ULL * 3600 * 24 * 365;
    if (timeout < kLongest)
        return m_queue->Changed().wait_for(lock, std::chrono::milliseconds(timeout), isReady);
    m_queue->Changed().wait(lock, isReady);
    return true;
}

/**
 * \brief Fetch the oldest notification
 * \param[out] buffer Gets its bytes; null removes it undelivered
 * \param[in,out] size Capacity of the buffer in bytes, then what was written
 * \param[in] timeout Milliseconds; 0 only looks, GENTL_INFINITE waits without end
 * \throw GenTLError TIMEOUT, ABORT (one for each Kill, all waiters at Unregister), BUFFER_TOO_SMALL, which removes
 *        nothing
 * \context Any number of threads; T waits here without any lock that another operation of the module wants.
 */
void Event::GetData(void* buffer, std::size_t* size, std::uint64_t timeout) {
    Required(size, "piSize");
    Optional(buffer, "pBuffer");
    std::unique_lock lock(m_queue->Mutex());
    if (!WaitLocked(lock, timeout))
        throw GenTLError(GC_ERR_TIMEOUT, "No notification came in time");
    if (m_unregistered)
        throw GenTLError(GC_ERR_ABORT, "The event is registered no longer");
    if (m_kills > 0) {
        --m_kills;
        throw GenTLError(GC_ERR_ABORT, "The wait was ended by EventKill");
    }
    const std::size_t needed = m_queue->FrontSizeLocked();
    if (buffer != nullptr && Load(size) < needed)
        throw GenTLError(GC_ERR_BUFFER_TOO_SMALL, "The notification needs " + std::to_string(needed) + " bytes");
    m_queue->TakeFrontLocked(buffer);
    Store(size, needed);
}

/// What a notification that was fetched says.
Info Event::Explain(EVENT_DATA_INFO_CMD command, const void* data, std::size_t size) const {
    return m_queue->Explain(command, Required(data, "pInBuffer"), size);
}

Info Event::GetInfo(EVENT_INFO_CMD command) const {
    const std::lock_guard lock(m_queue->Mutex());
    switch (command) {
        case EVENT_EVENT_TYPE:
            return std::int32_t{m_type};
        case EVENT_NUM_IN_QUEUE:
            return SizeValue{m_queue->CountLocked()};
        case EVENT_NUM_FIRED:
            return m_queue->FiredLocked() - m_firedBefore;
        case EVENT_SIZE_MAX:
        case EVENT_INFO_DATA_SIZE_MAX:
            return SizeValue{m_queue->MaxSize()};
        default:
            ThrowUnknownCommand(command);
    }
}

/// Removes all notifications undelivered.
void Event::Flush() {
    const std::lock_guard lock(m_queue->Mutex());
    m_queue->DiscardLocked();
}

/// Ends one wait: one that is under way, else the next one.
void Event::Kill() {
    {
        const std::lock_guard lock(m_queue->Mutex());
        ++m_kills;
    }
    // All wake, as the one that is chosen might not be waiting in this registration.
    m_queue->Changed().notify_all();
}

/// Ends all waits, now and later, and discards what was not fetched.
void Event::Unregister() {
    {
        const std::lock_guard lock(m_queue->Mutex());
        m_unregistered = true;
        m_kills = 0;
        m_queue->DiscardLocked();
    }
    m_queue->Changed().notify_all();
}

}  // namespace gentl
