/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Gate: who is at work between the interpreter and the library, and the end of that
 */
#include "Gate.h"

#include <thread>

namespace python {

// Never destroyed: threads may ask it to the very end of the process.
Gate& Gate::Instance() noexcept {
    static Gate* const gate = new Gate;
    return *gate;
}

/// Returns false when it is closed; else Leave is owed. Either this sees that it is closed, or the one who closes sees
/// this one inside.
bool Gate::Enter() noexcept {
    ++m_inside;
    if (m_closed) {
        --m_inside;
        return false;
    }
    if (!m_used.load(std::memory_order_relaxed))
        m_used = true;
    return true;
}

void Gate::Leave() noexcept {
    --m_inside;
}

/// Lets nobody in any more. Those that are inside stay until they leave.
void Gate::Close() noexcept {
    m_closed = true;
}

/// Returns whether everybody left in time. Must be called without the GIL, which they need for leaving.
bool Gate::WaitUntilEmpty(std::chrono::milliseconds timeout) const noexcept {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (m_inside != 0) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

}  // namespace python
