/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The one-shot timer that closes a port after a time of inactivity
 */

#include "VantoCLSer/InactivityTimer.h"

namespace Vanto {

namespace {

thread_local const CInactivityTimer* t_running = nullptr;  // whose callback this thread is in

}  // namespace

CInactivityTimer::~CInactivityTimer() {
    Stop();
    m_queue.reset();
}

/**
 * \brief Start the timer afresh
 * \param[in] dueTime Milliseconds; read once no other thread can change the timer any more, so that the last one to
 *            restart it always uses the present value. 0 only stops the timer.
 * \param[in] callback Called once on the timer's thread with (null, \a second)
 * \return false when the system refuses
 * \context Any thread but the callback's; waits for a running callback
 */
bool CInactivityTimer::Restart(const std::atomic<std::uint32_t>& dueTime, Callback callback, void* second) noexcept {
    if (t_running == this)
        return false;
    const std::lock_guard change(m_change);
    const std::uint32_t milliseconds = dueTime;
    if (milliseconds == 0)
        return DeleteTimer();
    if (!m_queue)
        m_queue = m_createQueue();
    if (!m_queue || !DeleteTimer())
        return false;
    {
        const std::lock_guard lock(m_criticalSection);
        m_callback = callback;
        m_first = nullptr;
        m_second = second;
    }
    const os::TimerQueue::TimerId timer = m_queue->CreateOneShot(milliseconds, &Trampoline, this);
    if (timer == 0) {
        Clear();
        return false;
    }
    const std::lock_guard lock(m_criticalSection);
    m_timer = timer;
    return true;
}

/**
 * \brief Stop the timer and wait for a running callback
 * \return false when the system refuses, and in that callback, which can't be waited for
 */
bool CInactivityTimer::Stop() noexcept {
    if (t_running == this)
        return false;
    const std::lock_guard change(m_change);
    return DeleteTimer();
}

bool CInactivityTimer::DeleteTimer() noexcept {
    if (m_timer == 0)
        return true;
    ++m_deletions;
    const bool deleted = m_queue->DeleteAndWait(m_timer);
    --m_deletions;
    if (deleted) {
        const std::lock_guard lock(m_criticalSection);
        m_timer = 0;
    }
    return deleted;
}

void CInactivityTimer::Clear() noexcept {
    const std::lock_guard lock(m_criticalSection);
    m_timer = 0;
    m_callback = nullptr;
    m_first = nullptr;
    m_second = nullptr;
}

void CInactivityTimer::Trampoline(void* timer) noexcept {
    if (timer == nullptr)
        return;
    auto& self = *static_cast<CInactivityTimer*>(timer);
    std::unique_lock lock(self.m_criticalSection);
    if (self.m_callback == nullptr)
        return;
    const Callback callback = self.m_callback;
    void* first = self.m_first;
    void* second = self.m_second;
    lock.unlock();
    // Not in the timer itself, which may be destroyed by its callback.
    t_running = &self;
    try {
        callback(first, second);
    } catch (...) {
        // Nobody is there to be told: the thread is the timer's.
    }
    t_running = nullptr;
}

}  // namespace Vanto
