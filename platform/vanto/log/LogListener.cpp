/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Reading what is logged: subscriptions and recorders, for tests and tools
 */

#include "vanto/LogListener.h"

#include <algorithm>

#include "log/LogRegistry.h"
#include "log/LogSubscriber.h"

namespace Vanto::tracelog {

/**
 * \class LogSubscription
 * \brief Calls a listener for the messages that its rules ask for, for as long as it lives
 *
 * The listener runs on the thread that logs, and on several at once when several log. It may log; it is not called for
 * what it logs itself.
 */

/**
 * \brief Subscribe
 * \param[in] listener Called for each message; an exception that it throws is swallowed
 * \param[in] rules What it wants, as LogRules reads it
 */
LogSubscription::LogSubscription(LogListener listener, std::string_view rules)
    : m_subscriber(std::make_shared<Subscriber>(std::move(listener), rules)) {
    LogRegistry::Instance().Add(m_subscriber);
}

/**
 * \brief Unsubscribe; afterwards no call of the listener runs, but for the one that this is called from
 */
LogSubscription::~LogSubscription() {
    LogRegistry::Instance().Remove(*m_subscriber);
    m_subscriber->CloseAndWait();
}

LogRecorder::LogRecorder(std::string_view rules)
    : m_subscription(
          [this](const LogMessage& message) {
              const std::lock_guard lock(m_mutex);
              m_messages.push_back(message);
              m_changed.notify_all();
          },
          rules) {}

std::vector<LogMessage> LogRecorder::GetMessages() const {
    const std::lock_guard lock(m_mutex);
    return m_messages;
}

namespace {

std::size_t Count(const std::vector<LogMessage>& messages, std::string LogMessage::*field, std::string_view wanted,
                  std::uint32_t level) {
    return static_cast<std::size_t>(std::count_if(messages.begin(), messages.end(), [&](const LogMessage& message) {
        return message.*field == wanted && (level == 0 || message.level == level);
    }));
}

}  // namespace

/**
 * \brief How many messages have a whole formatted text
 * \param[in] text All of it
 * \param[in] level Only messages of exactly this level; 0 for any
 */
std::size_t LogRecorder::CountText(std::string_view text, std::uint32_t level) const {
    const std::lock_guard lock(m_mutex);
    return Count(m_messages, &LogMessage::text, text, level);
}

/**
 * \brief How many messages were written with a format text
 * \param[in] format The text with its conversions, as the program has it
 * \param[in] level Only messages of exactly this level; 0 for any
 */
std::size_t LogRecorder::CountFormat(std::string_view format, std::uint32_t level) const {
    const std::lock_guard lock(m_mutex);
    return Count(m_messages, &LogMessage::format, format, level);
}

/**
 * \brief Wait for a message with a whole formatted text; returns at once when it was written already
 * \return False after the time-out
 */
bool LogRecorder::WaitForText(std::string_view text, std::chrono::milliseconds timeout) const {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [&] { return Count(m_messages, &LogMessage::text, text, 0) != 0; });
}

void LogRecorder::Clear() {
    const std::lock_guard lock(m_mutex);
    m_messages.clear();
}

}  // namespace Vanto::tracelog
