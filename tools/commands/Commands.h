/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The commands, each with its class in the .cpp file of its name
 */
#pragma once

#include <memory>

#include "commands/Command.h"

namespace tools {

template <class T>
std::unique_ptr<Command> Make() {
    return std::make_unique<T>();
}

extern const CommandEntry kListCommand;
extern const CommandEntry kPortsCommand;
extern const CommandEntry kXmlCommand;
extern const CommandEntry kFeaturesCommand;
extern const CommandEntry kInfoCommand;
extern const CommandEntry kGetCommand;
extern const CommandEntry kSetCommand;
extern const CommandEntry kExecCommand;
extern const CommandEntry kGrabCommand;
extern const CommandEntry kWatchCommand;
extern const CommandEntry kSaveCommand;
extern const CommandEntry kLoadCommand;
extern const CommandEntry kRateCommand;
extern const CommandEntry kReadCommand;
extern const CommandEntry kWriteCommand;
extern const CommandEntry kConfigPathCommand;
extern const CommandEntry kConfigShowCommand;
extern const CommandEntry kConfigCheckCommand;
extern const CommandEntry kConfigInitCommand;
extern const CommandEntry kDescribeCommand;
extern const CommandEntry kDoctorCommand;
extern const CommandEntry kCompletionCommand;
extern const CommandEntry kHelpCommand;
extern const CommandEntry kCompleteCommand;
extern const CommandEntry kManualPagesCommand;

}  // namespace tools
