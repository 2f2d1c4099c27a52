/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The callbacks of a node map
 */
#pragma once

#include <atomic>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

#include "GenApi/NodeCallback.h"
#include "os/LockName.h"

namespace GenApi {

/// A registered callback. Lives until it is removed and no thread runs it any more.
struct CallbackEntry {
    explicit CallbackEntry(CNodeCallback* registered) : callback(registered) {}
    ~CallbackEntry() { callback->Destroy(); }
    CallbackEntry(const CallbackEntry&) = delete;
    CallbackEntry& operator=(const CallbackEntry&) = delete;

    CNodeCallback* const callback;
    // Guarded by the table's mutex.
    bool removed = false;
    std::vector<std::thread::id> running;
};

using CallbackList = std::vector<std::shared_ptr<CallbackEntry>>;

/// Keeps callbacks by node. Add, Collect and Take want the node map's lock; Run and WaitFor want it free for callbacks
/// outside the lock.
class CallbackTable {
public:
    CallbackHandleType Add(std::uint32_t node, CNodeCallback* callback);
    /// Takes a callback out of the table, null when the handle is not known there.
    std::shared_ptr<CallbackEntry> Take(std::uint32_t node, CallbackHandleType handle);
    bool Has(std::uint32_t node) const { return m_entries.contains(node); }
    bool IsEmpty() const noexcept { return m_entries.empty(); }
    /// True when a callback wants to run before changes. Takes no lock.
    bool WantsBefore() const noexcept { return m_before != 0; }
    /// Appends the callbacks of a node that are of a type.
    void Collect(std::uint32_t node, ECallbackType type, CallbackList& list) const;
    /// Runs callbacks in their order, all of them, and returns the first exception that one threw.
    std::exception_ptr Run(const CallbackList& list, ECallbackType type);
    /// Waits until no other thread runs a removed callback; false when that takes too long.
    bool WaitFor(const std::shared_ptr<CallbackEntry>& entry);

private:
    bool Begin(CallbackEntry& entry);
    void End(CallbackEntry& entry);

    std::unordered_map<std::uint32_t, CallbackList> m_entries;
    std::atomic<int> m_before{0};
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "running node callbacks"};
    std::condition_variable m_ended;
};

}  // namespace GenApi
