/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A lock that is held through long waits, and that others wait for no longer than they like
 */

#include "Turn.h"

namespace ClSerTty {

void Turn::lock() {
    std::unique_lock lock(m_mutex);
    m_isFree.wait(lock, [this] { return !m_isTaken; });
    m_isTaken = true;
}

/// \return False when somebody else had it until the deadline
bool Turn::try_lock_until(std::chrono::steady_clock::time_point deadline) {
    std::unique_lock lock(m_mutex);
    if (!m_isFree.wait_until(lock, deadline, [this] { return !m_isTaken; }))
        return false;
    m_isTaken = true;
    return true;
}

void Turn::unlock() {
    const std::lock_guard lock(m_mutex);
    m_isTaken = false;
    m_isFree.notify_one();
}

}  // namespace ClSerTty
