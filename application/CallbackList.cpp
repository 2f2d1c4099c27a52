/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CallbackList: callbacks that may cancel themselves, and each other, while they run
 */
#include "CallbackList.h"

#include <exception>
#include <utility>

#include "vanto/TraceLog.h"

namespace Vanto {

thread_local int InsideCallback::s_depth = 0;

Subscription CallbackList::Add(std::function<void()> callback) {
    auto entry = std::make_shared<Entry>();
    entry->callback = std::move(callback);
    {
        const std::lock_guard lock(m_mutex);
        m_entries.push_back(entry);
    }
    return Subscription([weak = weak_from_this(), entry = std::move(entry)] {
        if (const auto list = weak.lock())
            list->Remove(entry);
    });
}

// T cancels and waits for the end of a run by another thread; a callback that cancels itself is T itself.
void CallbackList::Remove(const std::shared_ptr<Entry>& entry) {
    {
        const std::lock_guard lock(m_mutex);
        m_entries.remove(entry);
    }
    const std::lock_guard lock(entry->running);
    entry->callback = nullptr;
}

/// Runs all of them. What one throws is logged, and the others still run.
void CallbackList::Run() {
    std::list<std::shared_ptr<Entry>> entries;
    {
        const std::lock_guard lock(m_mutex);
        entries = m_entries;
    }
    for (const std::shared_ptr<Entry>& entry : entries) {
        const std::lock_guard lock(entry->running);
        const std::function<void()> callback = entry->callback;  // it stays while it cancels itself
        if (!callback)
            continue;
        const InsideCallback inside;
        try {
            callback();
        } catch (const std::exception& error) {
            tracelog::LogTrace(tracelog::LogGetCatID("Vanto.Camera"), tracelog::kError,
                               "A callback of the application threw: %s", error.what());
        } catch (...) {
            tracelog::LogTrace(tracelog::LogGetCatID("Vanto.Camera"), tracelog::kError,
                               "A callback of the application threw something");
        }
    }
}

}  // namespace Vanto
