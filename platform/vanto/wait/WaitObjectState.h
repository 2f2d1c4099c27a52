/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the copies of a wait object share
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <vector>

#include "os/LockName.h"
#include "vanto/WaitObject.h"

namespace Vanto {

/// When a wait ends; nothing for never.
using Deadline = std::optional<std::chrono::steady_clock::time_point>;

Deadline DeadlineAfter(std::uint32_t timeout);

/// A thread that waits for several objects: any of them pokes it, and it looks again.
class MultiWaiter {
public:
    void Poke();
    bool WaitForPoke(const Deadline& deadline);

private:
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "waiting thread"};
    std::condition_variable m_poked;
    bool m_isPoked = false;
};

/// Signalled or not, and who waits for it. Thread-safe, but for what needs Mutex() held.
class WaitObject::State {
public:
    State(bool manualReset, bool initiallySignalled) : m_manualReset(manualReset), m_signalled(initiallySignalled) {}

    bool Wait(const Deadline& deadline);
    void Signal();
    void Reset();

    void Add(MultiWaiter& waiter);
    void Remove(MultiWaiter& waiter) noexcept;

    std::mutex& Mutex() noexcept { return m_mutex; }
    bool IsSignalledLocked() const noexcept { return m_signalled; }
    void ConsumeLocked() noexcept { m_signalled = m_manualReset; }

private:
    const bool m_manualReset;
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "wait object"};
    std::condition_variable m_changed;
    bool m_signalled;
    std::vector<MultiWaiter*> m_waiters;
};

}  // namespace Vanto
