/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Numbers in options and arguments of commands
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tools {

/// Each throws ToolError (kUsage), naming the option, when the text is no such number.
std::chrono::milliseconds DurationOption(const std::string& option, const std::string& seconds);
std::int64_t NumberOption(const std::string& option, const std::string& text, std::int64_t least, std::int64_t most);

}  // namespace tools
