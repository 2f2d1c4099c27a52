/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Subscriber: one listener and the calls that run in it
 */
#pragma once

#include <condition_variable>
#include <mutex>
#include <string_view>

#include "os/LockName.h"
#include "vanto/LogListener.h"
#include "vanto/LogRules.h"

namespace Vanto::tracelog {

/// Delivers messages to one listener until it is closed. Thread-safe.
class Subscriber {
public:
    Subscriber(LogListener listener, std::string_view rules) : m_listener(std::move(listener)), m_rules(rules) {}

    std::uint32_t ThresholdOf(std::string_view category) const noexcept { return m_rules.ThresholdOf(category); }
    void Deliver(const LogMessage& message) noexcept;
    void CloseAndWait() noexcept;

private:
    class Call;

    const LogListener m_listener;
    const LogRules m_rules;
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "log subscriber"};
    std::condition_variable m_left;
    unsigned m_running = 0;
    bool m_closed = false;
};

}  // namespace Vanto::tracelog
