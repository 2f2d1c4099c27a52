/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Knows the frame deliveries that are under way, and ends them for good
 */

#include "VantoCLSer/stream/DeliveryGate.h"

#include "VantoCLSer/base/Log.h"

namespace Vanto {

void CDeliveryGate::Enter(Pass& pass) {
    const std::lock_guard lock(m_lock);
    if (m_isShut)
        return;
    pass.m_entered = ++m_moment;
    pass.m_next = m_passes;
    if (m_passes != nullptr)
        m_passes->m_previous = &pass;
    m_passes = &pass;
}

// Notifies under the lock: T that waits in Shut has the lock next, and then the gate may be gone.
void CDeliveryGate::Leave(Pass& pass) noexcept {
    if (!pass)
        return;
    const std::lock_guard lock(m_lock);
    if (pass.m_next != nullptr)
        pass.m_next->m_previous = pass.m_previous;
    (pass.m_previous != nullptr ? pass.m_previous->m_next : m_passes) = pass.m_next;
    m_changed.notify_all();
}

/**
 * \brief Wait until no other thread is in a delivery that it is in now
 *
 * Deliveries that begin later do not count. Nor do those whose threads wait here, too: D and E, each within a delivery,
 * do not wait for each other.
 *
 * \return false after the time-out
 * \context Any thread, within a delivery, too
 */
bool CDeliveryGate::WaitUntilIdle(std::chrono::milliseconds timeout) {
    std::unique_lock lock(m_lock);
    const std::uint64_t begin = ++m_moment;
    SetWaiting(true);
    m_changed.notify_all();
    const bool isIdle = m_changed.wait_for(lock, timeout, [&] { return IsIdleSince(begin); });
    SetWaiting(false);
    return isIdle;
}

// The deliveries of this thread.
void CDeliveryGate::SetWaiting(bool isWaiting) noexcept {
    for (Pass* pass = m_passes; pass != nullptr; pass = pass->m_next) {
        if (pass->m_thread != std::this_thread::get_id())
            continue;
        pass->m_isWaiting = isWaiting;
        if (isWaiting)
            pass->m_waited = m_moment;
    }
}

// A delivery whose thread has begun to wait since then has been seen waiting, although its wait may be over.
bool CDeliveryGate::IsIdleSince(std::uint64_t moment) const noexcept {
    for (const Pass* pass = m_passes; pass != nullptr; pass = pass->m_next) {
        if (pass->m_entered < moment && pass->m_waited < moment && !pass->m_isWaiting)
            return false;
    }
    return true;
}

/**
 * \brief Let nobody in any more, and wait until those who are in have left
 *
 * There is no end to the wait but theirs: going on would take the ground from under their feet. Must not be called with
 * a lock that a delivery needs, nor in a delivery, which would wait for itself; who does so is told in the log.
 */
void CDeliveryGate::Shut() {
    std::unique_lock lock(m_lock);
    m_isShut = true;
    if (IsWithinDelivery()) {
        lock.unlock();
        LogTrace(
            StreamLog(), tracelog::kError,
            "The stream grabber is destroyed within the delivery of a frame, which waits for itself now. Destroy the "
            "device on another thread.");
        lock.lock();
    }
    while (!m_changed.wait_for(lock, m_reminderTime, [this] { return m_passes == nullptr; })) {
        const std::size_t count = Count();
        lock.unlock();
        LogTrace(StreamLog(), tracelog::kWarning,
                 "The destruction of the stream grabber waits for %u frame deliveries.", count);
        lock.lock();
    }
}

bool CDeliveryGate::IsWithinDelivery() const noexcept {
    for (const Pass* pass = m_passes; pass != nullptr; pass = pass->m_next) {
        if (pass->m_thread == std::this_thread::get_id())
            return true;
    }
    return false;
}

std::size_t CDeliveryGate::Count() const noexcept {
    std::size_t count = 0;
    for (const Pass* pass = m_passes; pass != nullptr; pass = pass->m_next)
        ++count;
    return count;
}

}  // namespace Vanto
