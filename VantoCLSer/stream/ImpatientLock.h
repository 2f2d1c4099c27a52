/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Waits for a lock that may not be had
 */
#pragma once

#include <chrono>
#include <thread>

#include "GenApi/GenApi.h"

namespace Vanto {

/// Holds one lock for its own lifetime, unless \a givesUp, which is asked every few milliseconds while another thread
/// has it, says that it is not to be waited for any longer.
template <class Lock = GenApi::CLock>
class CImpatientLock {
public:
    template <class Predicate>
    CImpatientLock(Lock& lock, const Predicate& givesUp) : m_lock(lock), m_isHeld(lock.TryLock()) {
        while (!m_isHeld && !givesUp())
            m_isHeld = WaitFor(lock);
    }
    ~CImpatientLock() {
        if (m_isHeld)
            m_lock.Unlock();
    }
    CImpatientLock(const CImpatientLock&) = delete;
    CImpatientLock& operator=(const CImpatientLock&) = delete;
    explicit operator bool() const noexcept { return m_isHeld; }

private:
    static constexpr std::chrono::milliseconds kSlice{10};

    // A lock of GenICam's own can only be tried: then without a pause, as the moment in which a busy thread gives it
    // back lasts a microsecond.
    static bool WaitFor(Lock& lock) {
        if constexpr (requires { lock.TryLockFor(kSlice); }) {
            return lock.TryLockFor(kSlice);
        } else {
            for (const auto end = std::chrono::steady_clock::now() + kSlice; !lock.TryLock();) {
                if (std::chrono::steady_clock::now() >= end)
                    return false;
                std::this_thread::yield();
            }
            return true;
        }
    }

    Lock& m_lock;
    bool m_isHeld;
};

}  // namespace Vanto
