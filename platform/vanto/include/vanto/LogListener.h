/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reading what is logged: subscriptions and recorders, for tests and tools
 */
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "vanto/TraceLog.h"

namespace Vanto::tracelog {

/// One message as it was logged.
struct LogMessage {
    std::string category;                ///<  the category's name
    std::uint32_t level = 0;             ///<  a Level
    std::string format;                  ///<  the text with its conversions, as the program has it
    std::vector<std::string> arguments;  ///< each as a text, without the format's widths and flags
    std::string text;                    ///< the formatted message
};

/// Called for each message, on the thread that logs it; must not log itself.
using LogListener = std::function<void(const LogMessage&)>;

class Subscriber;

/// Calls a listener for the messages that its rules ask for, for as long as it lives.
class VANTOBASE_API LogSubscription {
public:
    explicit LogSubscription(LogListener listener, std::string_view rules = "*:trace");
    ~LogSubscription();
    LogSubscription(const LogSubscription&) = delete;
    LogSubscription& operator=(const LogSubscription&) = delete;

private:
    std::shared_ptr<Subscriber> m_subscriber;
};

/// Keeps the messages that its rules ask for. Thread-safe.
class VANTOBASE_API LogRecorder {
public:
    /// Records from now on; rules as VANTO_LOG has them.
    explicit LogRecorder(std::string_view rules = "*:trace");
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    /// Copies of what was recorded, in order.
    std::vector<LogMessage> GetMessages() const;
    std::size_t CountText(std::string_view text, std::uint32_t level = 0) const;
    std::size_t CountFormat(std::string_view format, std::uint32_t level = 0) const;
    bool WaitForText(std::string_view text, std::chrono::milliseconds timeout) const;
    /// Forgets what was recorded.
    void Clear();

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::vector<LogMessage> m_messages;
    LogSubscription m_subscription;
};

}  // namespace Vanto::tracelog
