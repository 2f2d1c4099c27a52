/* SPDX-License-Identifier: Apache-2.0 */
/*
 * LogSinks: where log lines go
 */
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vanto/LogRules.h"

namespace spdlog::sinks {
class sink;
}

namespace Vanto::tracelog {

/// The sinks that the environment asks for. Thread-safe.
class LogSinks {
public:
    LogSinks();
    ~LogSinks();
    LogSinks(const LogSinks&) = delete;
    LogSinks& operator=(const LogSinks&) = delete;

    std::uint32_t ThresholdOf(std::string_view category) const noexcept { return m_rules.ThresholdOf(category); }
    void Write(std::string_view category, std::uint32_t level, std::string_view text) const;

private:
    void OpenFile(const std::string& path);
    void ReportAboutItself(std::string_view text) const;

    LogRules m_rules;
    std::vector<std::shared_ptr<spdlog::sinks::sink>> m_sinks;
};

}  // namespace Vanto::tracelog
