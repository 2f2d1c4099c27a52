/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Event: one registration of a consumer for the notifications of a module
 */
#pragma once

#include <memory>

#include "events/EventQueue.h"
#include "support/HandleTable.h"

namespace gentl {

/// Fetching, killing and unregistering. It outlives its module for as long as somebody waits in it. Thread-safe.
class Event : public Object {
public:
    Event(EVENT_TYPE type, std::shared_ptr<EventQueue> queue);

    EVENT_TYPE Type() const noexcept { return m_type; }
    void GetData(void* buffer, std::size_t* size, std::uint64_t timeout);
    Info Explain(EVENT_DATA_INFO_CMD command, const void* data, std::size_t size) const;
    Info GetInfo(EVENT_INFO_CMD command) const;
    void Flush();
    void Kill();
    void Unregister();

private:
    bool WaitLocked(std::unique_lock<std::mutex>& lock, std::uint64_t timeout);

    const EVENT_TYPE m_type;
    const std::shared_ptr<EventQueue> m_queue;
    // Guarded by the queue's lock.
    std::uint64_t m_firedBefore;
    std::size_t m_kills = 0;
    bool m_unregistered = false;
};

}  // namespace gentl
