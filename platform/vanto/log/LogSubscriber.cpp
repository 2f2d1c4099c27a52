/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Subscriber: one listener and the calls that run in it
 */

#include "log/LogSubscriber.h"

namespace Vanto::tracelog {

/// A call of a listener on this thread; they are chained from the innermost outwards.
class Subscriber::Call {
public:
    explicit Call(Subscriber& subscriber) : m_subscriber(subscriber), m_outer(s_innermost) {
        s_innermost = this;
        const std::lock_guard lock(subscriber.m_mutex);
        ++subscriber.m_running;
        m_open = !subscriber.m_closed;
    }
    ~Call() {
        s_innermost = m_outer;
        const std::lock_guard lock(m_subscriber.m_mutex);
        --m_subscriber.m_running;
        m_subscriber.m_left.notify_all();
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    bool IsOpen() const noexcept { return m_open; }

    static bool RunsOnThisThread(const Subscriber& subscriber) noexcept {
        for (const Call* call = s_innermost; call != nullptr; call = call->m_outer) {
            if (&call->m_subscriber == &subscriber)
                return true;
        }
        return false;
    }

private:
    static thread_local const Call* s_innermost;

    Subscriber& m_subscriber;
    const Call* m_outer;
    bool m_open = false;
};

thread_local const Subscriber::Call* Subscriber::Call::s_innermost = nullptr;

/**
 * \brief Call the listener, unless the message was written by that very listener
 *
 * What the listener throws ends here: whoever logged must not notice who listens.
 */
void Subscriber::Deliver(const LogMessage& message) noexcept {
    if (message.level < m_rules.ThresholdOf(message.category) || Call::RunsOnThisThread(*this))
        return;
    try {
        const Call call(*this);
        if (call.IsOpen())
            m_listener(message);
    } catch (...) {  // see above
    }
}

/**
 * \brief Let no further call begin, and wait for those that run on other threads
 */
void Subscriber::CloseAndWait() noexcept {
    const unsigned own = Call::RunsOnThisThread(*this) ? 1 : 0;
    std::unique_lock lock(m_mutex);
    m_closed = true;
    m_left.wait(lock, [&] { return m_running == own; });
}

}  // namespace Vanto::tracelog
