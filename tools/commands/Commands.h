/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The commands, each a class in the .cpp file of its name: only the table makes them
 */
#pragma once

#include <memory>

#include "commands/Command.h"

namespace tools {

std::unique_ptr<Command> MakeListCommand();
std::unique_ptr<Command> MakePortsCommand();
std::unique_ptr<Command> MakeXmlCommand();
std::unique_ptr<Command> MakeFeaturesCommand();
std::unique_ptr<Command> MakeInfoCommand();
std::unique_ptr<Command> MakeGetCommand();
std::unique_ptr<Command> MakeSetCommand();
std::unique_ptr<Command> MakeExecCommand();
std::unique_ptr<Command> MakeGrabCommand();
std::unique_ptr<Command> MakeWatchCommand();
std::unique_ptr<Command> MakeSaveCommand();
std::unique_ptr<Command> MakeLoadCommand();
std::unique_ptr<Command> MakeRateCommand();
std::unique_ptr<Command> MakeReadCommand();
std::unique_ptr<Command> MakeWriteCommand();
std::unique_ptr<Command> MakeConfigPathCommand();
std::unique_ptr<Command> MakeConfigShowCommand();
std::unique_ptr<Command> MakeConfigCheckCommand();
std::unique_ptr<Command> MakeConfigInitCommand();
std::unique_ptr<Command> MakeDescribeCommand();
std::unique_ptr<Command> MakeDoctorCommand();
std::unique_ptr<Command> MakeHelpCommand();
std::unique_ptr<Command> MakeCompletionCommand();
std::unique_ptr<Command> MakeCompleteCommand();
std::unique_ptr<Command> MakeManualPagesCommand();

}  // namespace tools
