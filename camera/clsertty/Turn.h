/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A lock that is held through long waits, and that others wait for no longer than they like
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "os/LockName.h"

namespace ClSerTty {

/// For std::unique_lock and std::lock_guard. Does the work of std::timed_mutex, whose timed waits the thread sanitizer
/// does not know.
class Turn {
public:
    void lock();
    bool try_lock_until(std::chrono::steady_clock::time_point deadline);
    void unlock();

private:
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "turn"};
    std::condition_variable m_isFree;
    bool m_isTaken = false;
};

}  // namespace ClSerTty
