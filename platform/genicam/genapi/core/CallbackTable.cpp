/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The callbacks of a node map
 */

#include "core/CallbackTable.h"

#include <algorithm>
#include <chrono>

namespace GenApi {

namespace {
bool RunsBefore(const CNodeCallback& callback) {
    return (callback.GetCallbackType() & (cbPreInsideLock | cbPreOutsideLock)) != 0;
}

// Long enough for any callback that is not itself stuck.
constexpr std::chrono::seconds kPatience{10};
}  // namespace

CallbackHandleType CallbackTable::Add(std::uint32_t node, CNodeCallback* callback) {
    // Taken over from here on, whatever fails.
    const auto destroy = [](CNodeCallback* taken) { taken->Destroy(); };
    std::unique_ptr<CNodeCallback, decltype(destroy)> owned(callback);
    auto entry = std::make_shared<CallbackEntry>(callback);
    owned.release();  // the entry destroys it
    m_entries[node].push_back(std::move(entry));
    m_before += RunsBefore(*callback) ? 1 : 0;
    return reinterpret_cast<CallbackHandleType>(callback);
}

std::shared_ptr<CallbackEntry> CallbackTable::Take(std::uint32_t node, CallbackHandleType handle) {
    const auto found = m_entries.find(node);
    if (found == m_entries.end())
        return nullptr;
    CallbackList& list = found->second;
    const auto entry = std::find_if(list.begin(), list.end(), [handle](const std::shared_ptr<CallbackEntry>& held) {
        return reinterpret_cast<CallbackHandleType>(held->callback) == handle;
    });
    if (entry == list.end())
        return nullptr;
    std::shared_ptr<CallbackEntry> taken = std::move(*entry);
    list.erase(entry);
    m_before -= RunsBefore(*taken->callback) ? 1 : 0;
    if (list.empty())
        m_entries.erase(found);
    const std::lock_guard lock(m_mutex);
    taken->removed = true;
    return taken;
}

void CallbackTable::Collect(std::uint32_t node, ECallbackType type, CallbackList& list) const {
    const auto found = m_entries.find(node);
    if (found == m_entries.end())
        return;
    for (const std::shared_ptr<CallbackEntry>& entry : found->second) {
        if (entry->callback->GetCallbackType() == type)
            list.push_back(entry);
    }
}

std::exception_ptr CallbackTable::Run(const CallbackList& list, ECallbackType type) {
    std::exception_ptr first;
    for (const std::shared_ptr<CallbackEntry>& entry : list) {
        if (!Begin(*entry))
            continue;
        try {
            (*entry->callback)(type);
        } catch (...) {
            if (!first)
                first = std::current_exception();
        }
        End(*entry);
    }
    return first;
}

bool CallbackTable::WaitFor(const std::shared_ptr<CallbackEntry>& entry) {
    const std::thread::id self = std::this_thread::get_id();
    std::unique_lock lock(m_mutex);
    return m_ended.wait_for(lock, kPatience, [&] {
        return std::all_of(entry->running.begin(), entry->running.end(),
                           [self](const std::thread::id& runner) { return runner == self; });
    });
}

bool CallbackTable::Begin(CallbackEntry& entry) {
    const std::lock_guard lock(m_mutex);
    if (entry.removed)
        return false;
    entry.running.push_back(std::this_thread::get_id());
    return true;
}

void CallbackTable::End(CallbackEntry& entry) {
    const std::lock_guard lock(m_mutex);
    const auto self = std::find(entry.running.begin(), entry.running.end(), std::this_thread::get_id());
    entry.running.erase(self);
    m_ended.notify_all();
}

}  // namespace GenApi
