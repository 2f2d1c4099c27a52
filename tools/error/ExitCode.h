/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How a command ends, and the error that ends it
 */
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace tools {

/// What vanto-cl returns to the shell. A command that closed its camera after Ctrl-C ends as shells say it: 128 + 2.
enum class ExitCode : int { kDone = 0, kFailed = 1, kUsage = 2, kNoDevice = 3, kInterrupted = 130 };

/// Ends a command: what() is printed after "error: ", the hint on a line of its own.
class ToolError : public std::runtime_error {
public:
    explicit ToolError(const std::string& message, std::string hint = {}, ExitCode code = ExitCode::kFailed)
        : std::runtime_error(message), m_hint(std::move(hint)), m_code(code) {}

    const std::string& Hint() const noexcept { return m_hint; }
    ExitCode Code() const noexcept { return m_code; }

private:
    std::string m_hint;
    ExitCode m_code;
};

}  // namespace tools
