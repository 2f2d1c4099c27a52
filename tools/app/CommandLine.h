/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CommandLine: what stands behind "vanto-cl"
 */
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "commands/Command.h"
#include "commands/CommandModel.h"

namespace tools {

/// An option parser with a sub-parser for each command of the table. Thread-bound.
class CommandLine {
public:
    /// \param[in] columns Of the lines of the help
    explicit CommandLine(std::size_t columns);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    /// Reads the arguments; throws CLI::ParseError.
    void Parse(int count, const char* const* arguments);
    Command& Chosen() const noexcept;
    bool Simulates() const;
    int SimulatedCameras() const noexcept;

    /// The help of what these words name ("config path"), of the program without any. Throws ToolError (kUsage).
    std::string HelpOf(const std::vector<std::string>& words) const;
    /// The help or the version that was asked for in place of a command.
    std::string Asked(const std::exception& request) const;
    /// The command that asks for the help of what stands in the line.
    std::string HelpHere() const;
    /// The commands and options at the place where an unknown word stands, for a suggestion.
    std::vector<std::string> NamesBeside() const;
    /// What the commands declared, in the order of the help.
    std::vector<CommandModel> Models() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace tools
