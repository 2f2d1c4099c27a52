/* SPDX-License-Identifier: Apache-2.0 */
/*
 * LogRegistry: the process's log categories, sinks and subscribers
 */
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "log/LogSinks.h"
#include "log/LogSubscriber.h"
#include "os/LockName.h"
#include "vanto/TraceLog.h"

namespace Vanto::tracelog {

/// Knows every category, and sets its threshold to the lowest level that a sink or a subscriber wants. Thread-safe.
class LogRegistry {
public:
    static LogRegistry& Instance();

    CategoryId GetCategory(std::string_view name);
    void Write(const Category& category, std::uint32_t level, const char* format,
               const GenICam::FormatArguments& arguments);
    void Add(std::shared_ptr<Subscriber> subscriber);
    void Remove(const Subscriber& subscriber) noexcept;

private:
    void UpdateThreshold(Category& category) const noexcept;
    void UpdateThresholds() noexcept;

    const LogSinks m_sinks;
    std::mutex m_mutex;  // guards what follows
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "log"};
    std::map<std::string, Category, std::less<>> m_categories;
    std::vector<std::shared_ptr<Subscriber>> m_subscribers;
};

}  // namespace Vanto::tracelog
