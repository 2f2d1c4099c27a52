/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The commands of vanto-cl, in the order of the help
 */
#include "commands/Commands.h"

namespace tools {

namespace {

constexpr const CommandEntry* kCommands[] = {
    &kListCommand,       &kPortsCommand,      &kXmlCommand,         &kFeaturesCommand,   &kInfoCommand,
    &kGetCommand,        &kSetCommand,        &kExecCommand,        &kGrabCommand,       &kWatchCommand,
    &kSaveCommand,       &kLoadCommand,       &kRateCommand,        &kReadCommand,       &kWriteCommand,
    &kConfigPathCommand, &kConfigShowCommand, &kConfigCheckCommand, &kConfigInitCommand, &kDescribeCommand,
    &kDoctorCommand,     &kCompletionCommand, &kHelpCommand,        &kCompleteCommand,   &kManualPagesCommand,
};

constexpr CommandGroup kGroups[] = {
    {"config", "The port configuration file: path, show, check, init"},
};

}  // namespace

std::span<const CommandEntry* const> CommandTable() {
    return kCommands;
}

std::span<const CommandGroup> CommandGroups() {
    return kGroups;
}

}  // namespace tools
