/* SPDX-License-Identifier: Apache-2.0 */
/*
 * LogSinks: where log lines go
 */

#include "log/LogSinks.h"

#include <fmt/format.h>
#include <spdlog/sinks/stdout_sinks.h>

#include "log/EscapeText.h"
#include "log/FileSink.h"
#include "os/Environment.h"
#include "os/StandardStreams.h"
#include "vanto/TraceLog.h"

namespace Vanto::tracelog {

namespace {

constexpr const char* kPattern = "%Y-%m-%d %H:%M:%S.%f %-7l [%n] (%t) %v";
constexpr const char* kOwnCategory = "vanto.base.Log";
constexpr std::size_t kLongestRules = std::size_t{1024} * 1024;

spdlog::level::level_enum ToSpdlogLevel(std::uint32_t level) {
    if (level >= kError)
        return spdlog::level::err;
    if (level >= kWarning)
        return spdlog::level::warn;
    if (level >= kInfo)
        return spdlog::level::info;
    return level >= kDebug ? spdlog::level::debug : spdlog::level::trace;
}

}  // namespace

/**
 * \brief Read VANTO_LOG and VANTO_LOG_FILE
 *
 * Without VANTO_LOG nothing is ever printed. What is wrong with the two is printed once, here.
 */
LogSinks::LogSinks() {
    const os::EnvironmentValue wanted = os::GetEnvironment("VANTO_LOG", kLongestRules);
    if (wanted.status == os::EnvironmentStatus::kAbsent || wanted.status == os::EnvironmentStatus::kEmpty)
        return;
    if (os::HadStandardError()) {
        m_sinks.push_back(std::make_shared<spdlog::sinks::stderr_sink_mt>());
        m_sinks.back()->set_pattern(kPattern);
    }
    if (wanted.status == os::EnvironmentStatus::kTooLong)
        ReportAboutItself(fmt::format("VANTO_LOG is ignored: it is longer than {} characters", kLongestRules - 1));
    m_rules = LogRules(wanted.text);
    for (const std::string& entry : m_rules.GetBadEntries()) {
        ReportAboutItself(
            fmt::format("Entry '{}' of VANTO_LOG is ignored: write pattern:level, where level is error, warning, "
                        "info, debug, trace or off",
                        entry));
    }
    const os::EnvironmentValue file = os::GetEnvironment("VANTO_LOG_FILE");
    if (file.status == os::EnvironmentStatus::kPresent)
        OpenFile(file.text);
}

LogSinks::~LogSinks() = default;

void LogSinks::OpenFile(const std::string& path) {
    try {
        m_sinks.push_back(std::make_shared<FileSink>(path));
        m_sinks.back()->set_pattern(kPattern);
    } catch (const spdlog::spdlog_ex& error) {
        ReportAboutItself(fmt::format("VANTO_LOG_FILE '{}' can't be written: {}", path, error.what()));
    }
}

void LogSinks::ReportAboutItself(std::string_view text) const {
    Write(kOwnCategory, kWarning, text);
}

/**
 * \brief Write one line to every sink; one that fails keeps no other from its line
 */
void LogSinks::Write(std::string_view category, std::uint32_t level, std::string_view text) const {
    const std::string name = EscapeControlCharacters(category);
    const std::string line = EscapeControlCharacters(text);
    const spdlog::details::log_msg message(spdlog::source_loc{}, name, ToSpdlogLevel(level), line);
    for (const auto& sink : m_sinks) {
        try {
            sink->log(message);
            sink->flush();
        } catch (const spdlog::spdlog_ex&) {  // a full disk, a closed pipe: there is nowhere to report it
        }
    }
}

}  // namespace Vanto::tracelog
