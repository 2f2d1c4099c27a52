/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Knows the frame deliveries that are under way, and ends them for good
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <thread>
#include "os/LockName.h"

namespace Vanto {

/// Deliveries pass while the gate is open. Thread-safe.
class CDeliveryGate {
public:
    /// One delivery, from its construction to its destruction.
    class Pass {
    public:
        explicit Pass(CDeliveryGate& gate) : m_gate(gate) { gate.Enter(*this); }
        ~Pass() { m_gate.Leave(*this); }
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;
        explicit operator bool() const noexcept { return m_entered != 0; }

    private:
        friend CDeliveryGate;
        CDeliveryGate& m_gate;
        const std::thread::id m_thread = std::this_thread::get_id();
        // Guarded by the gate's lock; moments are counted, the first is 1.
        std::uint64_t m_entered = 0;  // 0 for who was sent back
        std::uint64_t m_waited = 0;   // when its thread began to wait itself
        bool m_isWaiting = false;
        Pass* m_previous = nullptr;
        Pass* m_next = nullptr;
    };

    static constexpr std::chrono::milliseconds kReminderTime{5000};

    explicit CDeliveryGate(std::chrono::milliseconds reminderTime = kReminderTime) : m_reminderTime(reminderTime) {}

    bool WaitUntilIdle(std::chrono::milliseconds timeout);
    void Shut();

private:
    void Enter(Pass& pass);
    void Leave(Pass& pass) noexcept;
    void SetWaiting(bool isWaiting) noexcept;
    bool IsIdleSince(std::uint64_t moment) const noexcept;
    bool IsWithinDelivery() const noexcept;
    std::size_t Count() const noexcept;

    const std::chrono::milliseconds m_reminderTime;
    std::mutex m_lock;
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "gate"};
    std::condition_variable m_changed;
    Pass* m_passes = nullptr;
    std::uint64_t m_moment = 0;
    bool m_isShut = false;
};

}  // namespace Vanto
