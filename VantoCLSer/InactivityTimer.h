/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The one-shot timer that closes a port after a time of inactivity
 */
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "os/CriticalSection.h"
#include "os/LockName.h"
#include "os/Timer.h"

namespace Vanto {

/// A timer that can be restarted and stopped by any thread, but for its own callback.
class CInactivityTimer {
public:
    using Callback = void (*)(void* first, void* second);

    using QueueFactory = std::function<std::unique_ptr<os::TimerQueue>()>;

    explicit CInactivityTimer(QueueFactory createQueue = &os::TimerQueue::Create)
        : m_createQueue(std::move(createQueue)) {}
    ~CInactivityTimer();
    CInactivityTimer(const CInactivityTimer&) = delete;
    CInactivityTimer& operator=(const CInactivityTimer&) = delete;

    bool Restart(const std::atomic<std::uint32_t>& dueTime, Callback callback, void* second) noexcept;
    bool Stop() noexcept;

    /// True while someone waits for the callback to end: a callback that waits for a lock must give way then.
    bool IsBeingDeleted() const noexcept { return m_deletions != 0; }

private:
    static void Trampoline(void* timer) noexcept;

    bool DeleteTimer() noexcept;
    void Clear() noexcept;

    static constexpr std::uint32_t kSpinCount = 200;

    const QueueFactory m_createQueue;
    // Held by thread T that restarts or stops the timer, which waits for the callback: so the callback never takes it.
    std::mutex m_change;
    [[no_unique_address]] const os::LockName m_changeName{&m_change, "timer's change"};
    // Guards the members below; never held while the callback runs.
    os::CriticalSection m_criticalSection{kSpinCount};
    std::unique_ptr<os::TimerQueue> m_queue;
    os::TimerQueue::TimerId m_timer = 0;
    Callback m_callback = nullptr;
    void* m_first = nullptr;
    void* m_second = nullptr;
    std::atomic<int> m_deletions{0};
};

}  // namespace Vanto
