/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts the frame deliveries that are under way, and ends them for good
 */

#include "VantoCLSer/DeliveryGate.h"

namespace Vanto {

thread_local const CDeliveryGate* CDeliveryGate::t_current = nullptr;

CDeliveryGate::Pass::~Pass() {
    if (!m_granted)
        return;
    t_current = m_outer;
    m_gate.Leave();
}

bool CDeliveryGate::Enter() {
    const std::lock_guard lock(m_lock);
    if (m_shut)
        return false;
    ++m_count;
    t_current = this;
    return true;
}

// Notifies under the lock: the gate may be gone as soon as a waiting Shut has it.
void CDeliveryGate::Leave() {
    const std::lock_guard lock(m_lock);
    if (--m_count == 0)
        m_idle.notify_all();
}

/**
 * \brief Wait until no other thread delivers
 * \return false after the time-out, and at once on a thread that is itself in a delivery
 */
bool CDeliveryGate::WaitUntilIdle(std::chrono::milliseconds timeout) {
    if (t_current == this)
        return false;
    std::unique_lock lock(m_lock);
    return m_idle.wait_for(lock, timeout, [this] { return m_count == 0; });
}

/**
 * \brief Let nobody in any more, and wait until those who are in have left
 *
 * Must not be called in a delivery, nor with a lock that a delivery needs. A delivery is one copy: the wait ends.
 */
void CDeliveryGate::Shut() {
    std::unique_lock lock(m_lock);
    m_shut = true;
    m_idle.wait(lock, [this] { return m_count == 0; });
}

}  // namespace Vanto
