/* SPDX-License-Identifier: Apache-2.0 */
/*
 * EventQueue: what waits to be fetched by EventGetData
 */
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

#include "os/LockName.h"
#include "support/Info.h"

namespace gentl {

/// A queue of notifications with a lock of its own, so that fetching waits for nothing else. The operations whose names
/// end in Locked want that lock held.
class EventQueue {
public:
    virtual ~EventQueue() = default;

    std::mutex& Mutex() const noexcept { return m_mutex; }
    std::condition_variable& Changed() noexcept { return m_changed; }

    virtual std::size_t CountLocked() const = 0;
    /// Bytes of the oldest entry.
    virtual std::size_t FrontSizeLocked() const = 0;
    /// Removes the oldest entry; null gives it to nobody.
    virtual void TakeFrontLocked(void* target) = 0;
    virtual void DiscardLocked() = 0;
    /// Somebody begins to listen: what nobody has heard is lost.
    virtual void BeginLocked() = 0;
    /// Entries ever added.
    virtual std::uint64_t FiredLocked() const = 0;
    /// Bytes of the largest entry that can come.
    virtual std::size_t MaxSize() const noexcept = 0;
    /// What an entry that was fetched says.
    virtual Info Explain(EVENT_DATA_INFO_CMD command, const void* data, std::size_t size) const = 0;

protected:
    EventQueue() = default;

private:
    mutable std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "GenTL events"};
    std::condition_variable m_changed;
};

/// Notifications that carry a number or name and a text. A queue that nobody empties keeps the latest ones.
class NoticeQueue : public EventQueue {
public:
    static constexpr std::size_t kMostEntries = 256;
    static constexpr std::size_t kMostText = 512;

    explicit NoticeQueue(EVENT_TYPE type) noexcept : m_type(type) {}

    void Add(std::int64_t number, std::string_view text);

    std::size_t CountLocked() const override { return m_entries.size(); }
    std::size_t FrontSizeLocked() const override { return m_entries.front().size(); }
    void TakeFrontLocked(void* target) override;
    void DiscardLocked() override { m_entries.clear(); }
    void BeginLocked() override { DiscardLocked(); }
    std::uint64_t FiredLocked() const override { return m_fired; }
    std::size_t MaxSize() const noexcept override;
    Info Explain(EVENT_DATA_INFO_CMD command, const void* data, std::size_t size) const override;

private:
    const EVENT_TYPE m_type;
    std::deque<std::vector<std::uint8_t>> m_entries;
    std::uint64_t m_fired = 0;
};

}  // namespace gentl
