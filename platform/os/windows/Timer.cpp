/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One-shot timers on the timer queues of Windows
 */

#include "os/Timer.h"
#include "os/LockName.h"

#include <windows.h>

#include <exception>
#include <map>
#include <mutex>
#include <utility>

namespace os {

namespace {

// Held by the table and, while its callback runs, by the thread that runs it.
struct OneShot {
    TimerQueue::Callback callback;
    void* parameter;
    const void* queue;
    HANDLE handle = nullptr;
};

// What runs on this thread, to tell a callback's own timer and queue from others.
thread_local OneShot* t_running = nullptr;
// The callback destroyed its own queue and left the record to the thread.
thread_local bool t_orphaned = false;

void CALLBACK RunTimer(PVOID context, BOOLEAN /*timerFired*/) {
    t_running = static_cast<OneShot*>(context);
    t_running->callback(t_running->parameter);
    OneShot* const timer = std::exchange(t_running, nullptr);
    if (std::exchange(t_orphaned, false))
        delete timer;
}

class SystemTimerQueue : public TimerQueue {
public:
    explicit SystemTimerQueue(HANDLE queue) noexcept : m_queue(queue) {}

    ~SystemTimerQueue() override {
        if (t_running == nullptr || t_running->queue != this) {
            ::DeleteTimerQueueEx(m_queue, INVALID_HANDLE_VALUE);
            return;
        }
        // A callback that destroys its own queue can't be waited for, but the others can.
        for (auto& [id, timer] : m_timers) {
            if (timer.get() == t_running)
                t_orphaned = timer.release() != nullptr;
            else
                ::DeleteTimerQueueTimer(m_queue, timer->handle, INVALID_HANDLE_VALUE);
        }
        ::DeleteTimerQueueEx(m_queue, nullptr);
    }

    TimerId CreateOneShot(std::uint32_t dueTime, Callback callback, void* parameter) noexcept override {
        if (callback == nullptr)
            return 0;
        try {
            const std::lock_guard lock(m_mutex);
            auto timer = std::make_unique<OneShot>(OneShot{callback, parameter, this});
            const TimerId id = m_lastId + 1;
            OneShot* const record = m_timers.emplace(id, std::move(timer)).first->second.get();
            if (::CreateTimerQueueTimer(&record->handle, m_queue, RunTimer, record, dueTime, 0, WT_EXECUTEONLYONCE) ==
                0) {
                m_timers.erase(id);
                return 0;
            }
            return m_lastId = id;
        } catch (const std::exception&) {
            return 0;
        }
    }

    bool DeleteAndWait(TimerId timer) noexcept override {
        Timers::node_type node = Take(timer);
        if (node.empty())
            return false;
        // Without the lock: the callback that this waits for may use the queue.
        if (::DeleteTimerQueueTimer(m_queue, node.mapped()->handle, INVALID_HANDLE_VALUE) != 0)
            return true;
        const std::lock_guard lock(m_mutex);
        m_timers.insert(std::move(node));
        return false;
    }

private:
    using Timers = std::map<TimerId, std::unique_ptr<OneShot>>;

    Timers::node_type Take(TimerId timer) noexcept {
        const std::lock_guard lock(m_mutex);
        const auto found = m_timers.find(timer);
        return found == m_timers.end() || found->second.get() == t_running ? Timers::node_type()
                                                                           : m_timers.extract(found);
    }

    HANDLE m_queue;
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "timers"};
    Timers m_timers;
    TimerId m_lastId = 0;
};

}  // namespace

/**
 * \brief Make a timer queue
 * \context The queue's operations may be called by any thread. A queue must not be destroyed while one runs.
 * \return The queue, or null when the system has none to give
 */
std::unique_ptr<TimerQueue> TimerQueue::Create() noexcept {
    const HANDLE queue = ::CreateTimerQueue();
    if (queue == nullptr)
        return nullptr;
    try {
        return std::make_unique<SystemTimerQueue>(queue);
    } catch (const std::exception&) {
        ::DeleteTimerQueueEx(queue, nullptr);
        return nullptr;
    }
}

}  // namespace os
