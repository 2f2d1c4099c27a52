/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Command: one of the things that vanto-cl does
 */
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "error/ExitCode.h"

namespace tools {

class Options;
class Output;

/// One command: says which options it takes, then runs with what was given.
class Command {
public:
    virtual ~Command() = default;

    /// Adds the command's options; their targets are members of the command.
    virtual void Declare(Options& options) = 0;

    /// Does the work. May throw ToolError, GenICam exceptions and standard ones; the application reports them.
    virtual ExitCode Run(Output& output) = 0;
};

/// A command as the table has it. A name of two words ("config path") is a command of a group. A command without a
/// summary is for scripts and not in the help.
struct CommandEntry {
    const char* name;
    const char* summary;
    std::unique_ptr<Command> (*make)();
};

/// A group of commands and what it is about.
struct CommandGroup {
    const char* name;
    const char* summary;
};

/// In the order of the help.
std::span<const CommandEntry* const> CommandTable();
std::span<const CommandGroup> CommandGroups();
/// The help of what these words name ("config path"), of the program without any. Throws ToolError (kUsage).
std::string HelpOf(const std::vector<std::string>& words, const Output& output);

}  // namespace tools
