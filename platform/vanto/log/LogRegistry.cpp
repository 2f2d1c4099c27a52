/* SPDX-License-Identifier: Apache-2.0 */
/*
 * LogRegistry: the process's log categories, sinks and subscribers
 */

#include "log/LogRegistry.h"

#include <algorithm>

namespace Vanto::tracelog {

/**
 * \brief The one registry
 *
 * It is never destroyed: destructors of static objects log, in an order that nobody knows.
 */
LogRegistry& LogRegistry::Instance() {
    static LogRegistry* const instance = std::make_unique<LogRegistry>().release();
    return *instance;
}

CategoryId LogRegistry::GetCategory(std::string_view name) {
    const std::lock_guard lock(m_mutex);
    if (const auto known = m_categories.find(name); known != m_categories.end())
        return &known->second;
    const auto added = m_categories.try_emplace(std::string(name), std::string(name)).first;
    UpdateThreshold(added->second);
    return &added->second;
}

void LogRegistry::Write(const Category& category, std::uint32_t level, const char* format,
                        const GenICam::FormatArguments& arguments) {
    LogMessage message{.category = category.GetName(),
                       .level = level,
                       .format = format != nullptr ? format : "",
                       .arguments = {},
                       .text = GenICam::FormatTyped(format, arguments)};
    std::vector<std::shared_ptr<Subscriber>> subscribers;
    {
        const std::lock_guard lock(m_mutex);
        subscribers = m_subscribers;
    }
    if (level >= m_sinks.ThresholdOf(message.category))
        m_sinks.Write(message.category, level, message.text);
    if (subscribers.empty())
        return;
    for (const GenICam::FormatArgument& argument : arguments)
        message.arguments.push_back(argument.ToString());
    for (const auto& subscriber : subscribers)
        subscriber->Deliver(message);
}

void LogRegistry::Add(std::shared_ptr<Subscriber> subscriber) {
    const std::lock_guard lock(m_mutex);
    m_subscribers.push_back(std::move(subscriber));
    UpdateThresholds();
}

void LogRegistry::Remove(const Subscriber& subscriber) noexcept {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_subscribers, [&](const auto& held) { return held.get() == &subscriber; });
    UpdateThresholds();
}

void LogRegistry::UpdateThreshold(Category& category) const noexcept {
    std::uint32_t threshold = m_sinks.ThresholdOf(category.GetName());
    for (const auto& subscriber : m_subscribers)
        threshold = std::min(threshold, subscriber->ThresholdOf(category.GetName()));
    category.m_threshold.store(threshold, std::memory_order_relaxed);
}

void LogRegistry::UpdateThresholds() noexcept {
    for (auto& entry : m_categories)
        UpdateThreshold(entry.second);
}

}  // namespace Vanto::tracelog
