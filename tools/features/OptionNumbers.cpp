/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Numbers in options and arguments of commands
 */
#include "features/OptionNumbers.h"

#include <fmt/format.h>

#include <cmath>

#include "base/ValueText.h"
#include "error/ExitCode.h"

namespace tools {

/// Seconds with a fraction, at most a day.
std::chrono::milliseconds DurationOption(const std::string& option, const std::string& seconds) {
    constexpr double kMostSeconds = 86400.0;
    constexpr double kMilliseconds = 1000.0;
    const auto value = base::NumberFromText(seconds, "s");
    if (!value || *value < 0.0 || *value > kMostSeconds)
        throw ToolError(fmt::format("{}: '{}' is no number of seconds from 0 to {}", option, seconds, kMostSeconds), {},
                        ExitCode::kUsage);
    return std::chrono::milliseconds(std::llround(*value * kMilliseconds));
}

std::int64_t NumberOption(const std::string& option, const std::string& text, std::int64_t least, std::int64_t most) {
    const auto value = base::IntegerFromText(text);
    if (!value || *value < least || *value > most)
        throw ToolError(fmt::format("{}: '{}' is no number from {} to {}", option, text, least, most), {},
                        ExitCode::kUsage);
    return *value;
}

}  // namespace tools
