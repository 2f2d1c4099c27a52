/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is made when it is first asked for
 */
#pragma once

#include <atomic>
#include <mutex>

#include "os/LockName.h"

namespace GenApi {

/// Lets the first who comes make something. Who comes meanwhile waits for it, who comes after a making that threw tries
/// again: there the systems' own functions leave others waiting for ever, unless they know of exceptions.
class Once {
public:
    template <class Make>
    void Do(const Make& make) {
        if (m_isDone.load(std::memory_order_acquire))
            return;
        const std::lock_guard lock(m_mutex);
        if (m_isDone.load(std::memory_order_relaxed))
            return;
        make();
        m_isDone.store(true, std::memory_order_release);
    }

private:
    std::mutex m_mutex;
    [[no_unique_address, maybe_unused]] const os::LockName m_mutexName{&m_mutex, "tables of a description"};
    std::atomic<bool> m_isDone = false;
};

}  // namespace GenApi
