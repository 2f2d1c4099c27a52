/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Counts the frame deliveries that are under way, and ends them for good
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace Vanto {

/// Deliveries pass while the gate is open. Thread-safe.
class CDeliveryGate {
public:
    /// One delivery, from its construction to its destruction.
    class Pass {
    public:
        explicit Pass(CDeliveryGate& gate);
        ~Pass();
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;
        explicit operator bool() const noexcept { return m_granted; }

    private:
        friend CDeliveryGate;
        CDeliveryGate& m_gate;
        const Pass* const m_outer;
        const bool m_granted;
    };

    bool WaitUntilIdle(std::chrono::milliseconds timeout);
    void Shut();

private:
    bool Enter();
    void Leave();
    void NoteIdle();
    std::size_t CountOfThisThread() const noexcept;

    // The deliveries that this thread is in: who delivers can't wait for himself.
    static thread_local const Pass* t_innermost;

    std::mutex m_lock;
    std::condition_variable m_idle;
    std::size_t m_count = 0;
    std::size_t m_waiting = 0;  // of these, on threads that wait themselves
    std::uint64_t m_idleMoments = 0;
    bool m_shut = false;
};

}  // namespace Vanto
