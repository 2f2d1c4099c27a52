/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CLock: the recursive lock of GenICam
 */
#pragma once

#include <chrono>
#include <mutex>

#include "GenApi/Types.h"

namespace GenApi {

/// A recursive lock. Thread-safe by nature.
class CLock {
public:
    CLock() = default;
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    /// Takes it; waits while another thread holds it.
    void Lock() { m_mutex.lock(); }
    /// Takes it if no other thread holds it.
    bool TryLock() { return m_mutex.try_lock(); }
    /// Gives it back, once for each time that it was taken.
    void Unlock() { m_mutex.unlock(); }

    /// Waits as Lock does, but gives up after a while: who only asks TryLock again and again loses against a thread
    /// that gives the lock back for a microsecond at a time. An extra of this implementation.
    GENAPI_API bool TryLockFor(std::chrono::milliseconds time);

private:
    std::recursive_timed_mutex m_mutex;
};

/// Holds a CLock for its own lifetime.
class AutoLock {
public:
    /// Takes the lock.
    explicit AutoLock(CLock& lock) : m_lock(lock) { m_lock.Lock(); }
    ~AutoLock() { m_lock.Unlock(); }
    AutoLock(const AutoLock&) = delete;
    AutoLock& operator=(const AutoLock&) = delete;

private:
    CLock& m_lock;
};

}  // namespace GenApi
