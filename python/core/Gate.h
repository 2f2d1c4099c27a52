/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Gate: who is at work between the interpreter and the library, and the end of that
 */
#pragma once

#include <atomic>
#include <chrono>

namespace python {

/// Counts the threads that are in the library without the GIL, or on the way from there into the interpreter. Once it
/// is closed nobody comes in any more: a thread that asks an interpreter which has ended for its GIL never comes back.
/// Thread-safe.
class Gate {
public:
    static Gate& Instance() noexcept;

    bool Enter() noexcept;
    void Leave() noexcept;
    void Close() noexcept;
    bool WaitUntilEmpty(std::chrono::milliseconds timeout) const noexcept;

    /// Whether nobody comes in any more.
    bool IsClosed() const noexcept { return m_closed; }
    /// Whether anybody ever came in.
    bool WasUsed() const noexcept { return m_used; }

private:
    std::atomic<int> m_inside{0};
    std::atomic<bool> m_closed{false};
    std::atomic<bool> m_used{false};
};

/// A place inside the gate, for as long as it lives.
class Inside {
public:
    Inside() noexcept : m_entered(Gate::Instance().Enter()) {}
    ~Inside() {
        if (m_entered)
            Gate::Instance().Leave();
    }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

    /// Whether it came in.
    explicit operator bool() const noexcept { return m_entered; }

private:
    const bool m_entered;
};

}  // namespace python
