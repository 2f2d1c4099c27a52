/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Subscription: a callback that is registered as long as this object lives
 */
#pragma once

#include <functional>
#include <utility>

namespace Vanto {

/// Ends a registration when it is destroyed. When Cancel or the destructor returns, no other thread runs the callback
/// any more; a callback may cancel itself. So whoever cancels must not hold a lock that the callback wants.
class Subscription {
public:
    Subscription() = default;
    /// For those who give subscriptions out: \a cancel is called once.
    explicit Subscription(std::function<void()> cancel) : m_cancel(std::move(cancel)) {}
    ~Subscription() { Cancel(); }
    /// Takes the registration over.
    Subscription(Subscription&& other) noexcept : m_cancel(std::exchange(other.m_cancel, nullptr)) {}
    /// Ends its registration and takes another over.
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            Cancel();
            m_cancel = std::exchange(other.m_cancel, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;

    /// Ends the registration now; does nothing the second time.
    void Cancel() noexcept {
        if (const auto cancel = std::exchange(m_cancel, nullptr))
            cancel();
    }
    /// Whether it was not ended yet.
    bool IsActive() const noexcept { return m_cancel != nullptr; }

private:
    std::function<void()> m_cancel;
};

}  // namespace Vanto
