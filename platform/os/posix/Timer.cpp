/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One-shot timers on a thread and a condition variable
 */

#include "os/Timer.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

#include "os/LockName.h"

namespace os {

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kWorkName[] = "timer's callback";

struct OneShot {
    Clock::time_point due;
    TimerQueue::Callback callback;
    void* parameter;
    bool fired = false;
};

// What the queue and its thread share. The thread holds a share of its own, so that a callback may destroy the queue.
class TimerTable {
public:
    TimerQueue::TimerId Add(const OneShot& timer) {
        const std::lock_guard lock(m_mutex);
        const TimerQueue::TimerId id = ++m_lastId;
        m_timers.emplace(id, timer);
        m_changed.notify_all();
        return id;
    }

    bool RemoveAndWait(TimerQueue::TimerId id, bool onTimerThread) {
        if (!onTimerThread)
            AwaitWork(kWorkName);
        std::unique_lock lock(m_mutex);
        if (!m_timers.contains(id) || (m_running == id && onTimerThread))
            return false;
        m_changed.wait(lock, [&] { return m_running != id; });
        m_timers.erase(id);
        return true;
    }

    void Stop() {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
        m_changed.notify_all();
    }

    void Run() {
        std::unique_lock lock(m_mutex);
        while (!m_stopped) {
            const auto next = NextDue();
            if (next == m_timers.end())
                m_changed.wait(lock);
            else if (next->second.due > Clock::now())
                m_changed.wait_until(lock, Clock::time_point(next->second.due));
            else
                Fire(lock, next->first, next->second);
        }
    }

private:
    using Timers = std::map<TimerQueue::TimerId, OneShot>;

    Timers::iterator NextDue() {
        auto next = m_timers.end();
        for (auto timer = m_timers.begin(); timer != m_timers.end(); ++timer)
            if (!timer->second.fired && (next == m_timers.end() || timer->second.due < next->second.due))
                next = timer;
        return next;
    }

    void Fire(std::unique_lock<std::mutex>& lock, TimerQueue::TimerId id, OneShot& timer) {
        timer.fired = true;
        m_running = id;
        const OneShot copy = timer;
        lock.unlock();
        {
            const AwaitedWork work(kWorkName);
            copy.callback(copy.parameter);
        }
        lock.lock();
        m_running = 0;
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "timers"};
    std::condition_variable m_changed;
    Timers m_timers;
    TimerQueue::TimerId m_lastId = 0;
    TimerQueue::TimerId m_running = 0;
    bool m_stopped = false;
};

class ThreadTimerQueue : public TimerQueue {
public:
    ThreadTimerQueue() : m_thread([table = m_table] { table->Run(); }) {}

    ~ThreadTimerQueue() override {
        m_table->Stop();
        // A callback that destroys its own queue can't be waited for.
        if (IsTimerThread())
            m_thread.detach();
        else
            m_thread.join();
    }

    TimerId CreateOneShot(std::uint32_t dueTime, Callback callback, void* parameter) noexcept override {
        if (callback == nullptr)
            return 0;
        try {
            return m_table->Add({Clock::now() + std::chrono::milliseconds(dueTime), callback, parameter});
        } catch (const std::exception&) {
            return 0;
        }
    }

    bool DeleteAndWait(TimerId timer) noexcept override { return m_table->RemoveAndWait(timer, IsTimerThread()); }

private:
    bool IsTimerThread() const noexcept { return std::this_thread::get_id() == m_thread.get_id(); }

    std::shared_ptr<TimerTable> m_table = std::make_shared<TimerTable>();
    std::thread m_thread;
};

}  // namespace

/**
 * \brief Make a timer queue
 * \context The queue's operations may be called by any thread. A queue must not be destroyed while one runs.
 * \return The queue, or null when the system has no thread to give
 */
std::unique_ptr<TimerQueue> TimerQueue::Create() noexcept {
    try {
        return std::make_unique<ThreadTimerQueue>();
    } catch (const std::exception&) {
        return nullptr;
    }
}

}  // namespace os
