/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts the frame deliveries that are under way, and ends them for good
 */

#include "VantoCLSer/stream/DeliveryGate.h"

namespace Vanto {

thread_local const CDeliveryGate::Pass* CDeliveryGate::t_innermost = nullptr;

CDeliveryGate::Pass::Pass(CDeliveryGate& gate) : m_gate(gate), m_outer(t_innermost), m_granted(gate.Enter()) {
    if (m_granted)
        t_innermost = this;
}

CDeliveryGate::Pass::~Pass() {
    if (!m_granted)
        return;
    t_innermost = m_outer;
    m_gate.Leave();
}

bool CDeliveryGate::Enter() {
    const std::lock_guard lock(m_lock);
    if (m_shut)
        return false;
    ++m_count;
    return true;
}

// Notifies under the lock: the gate may be gone as soon as a waiting Shut has it.
void CDeliveryGate::Leave() {
    const std::lock_guard lock(m_lock);
    --m_count;
    NoteIdle();
}

// Who waits has seen the moment even when another delivery begins before it runs again.
void CDeliveryGate::NoteIdle() {
    if (m_count != m_waiting)
        return;
    ++m_idleMoments;
    m_idle.notify_all();
}

std::size_t CDeliveryGate::CountOfThisThread() const noexcept {
    std::size_t count = 0;
    for (const Pass* pass = t_innermost; pass != nullptr; pass = pass->m_outer)
        count += &pass->m_gate == this ? 1 : 0;
    return count;
}

/**
 * \brief Wait until no other thread delivers, or those that do wait here, too
 * \return false after the time-out
 */
bool CDeliveryGate::WaitUntilIdle(std::chrono::milliseconds timeout) {
    const std::size_t own = CountOfThisThread();
    std::unique_lock lock(m_lock);
    const std::uint64_t before = m_idleMoments;
    m_waiting += own;
    NoteIdle();
    const bool isIdle = m_idle.wait_for(lock, timeout, [&] { return m_idleMoments != before; });
    m_waiting -= own;
    return isIdle;
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
