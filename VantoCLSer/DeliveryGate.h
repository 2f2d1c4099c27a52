/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts the frame deliveries that are under way, and ends them for good
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace Vanto {

/// Deliveries pass while the gate is open. Thread-safe.
class CDeliveryGate {
public:
    /// One delivery, from its construction to its destruction.
    class Pass {
    public:
        explicit Pass(CDeliveryGate& gate) : m_gate(gate), m_outer(t_current), m_granted(gate.Enter()) {}
        ~Pass();
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;
        explicit operator bool() const noexcept { return m_granted; }

    private:
        CDeliveryGate& m_gate;
        const CDeliveryGate* const m_outer;
        const bool m_granted;
    };

    bool WaitUntilIdle(std::chrono::milliseconds timeout);
    void Shut();

private:
    bool Enter();
    void Leave();

    // The gate of the delivery that this thread is in: who delivers can't wait for himself.
    static thread_local const CDeliveryGate* t_current;

    std::mutex m_lock;
    std::condition_variable m_idle;
    std::size_t m_count = 0;
    bool m_shut = false;
};

}  // namespace Vanto
