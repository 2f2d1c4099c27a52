/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The commands of vanto-cl, in the order of the help
 */
#include "commands/Commands.h"

namespace tools {

namespace {

constexpr CommandEntry kCommands[] = {
    {"list", "List the cameras, or say why there are none", &MakeListCommand},
    {"ports", "List the serial ports of this machine and their configuration", &MakePortsCommand},
    {"xml", "Fetch a camera's own description", &MakeXmlCommand},
    {"features", "List a camera's features with their values", &MakeFeaturesCommand},
    {"info", "Show all that is known of features", &MakeInfoCommand},
    {"get", "Print the values of features", &MakeGetCommand},
    {"set", "Change features, all or none", &MakeSetCommand},
    {"exec", "Execute a command of a camera", &MakeExecCommand},
    {"grab", "Take images and save them", &MakeGrabCommand},
    {"watch", "Print features whenever they change", &MakeWatchCommand},
    {"save", "Save a camera's settings in a file", &MakeSaveCommand},
    {"load", "Set a camera as a file says", &MakeLoadCommand},
    {"rate", "Show a camera's baud rate, or bring it to one to stay", &MakeRateCommand},
    {"read", "Read a camera's registers", &MakeReadCommand},
    {"write", "Write a camera's registers", &MakeWriteCommand},
    {"config path", "Say where the file is looked for, and why there", &MakeConfigPathCommand},
    {"config show", "Show what the file says", &MakeConfigShowCommand},
    {"config check", "Say what is wrong with the file, with line and column", &MakeConfigCheckCommand},
    {"config init", "Write a new file for the ports of this machine", &MakeConfigInitCommand},
    {"describe", "Show or check a camera description from a file", &MakeDescribeCommand},
    {"doctor", "Look for what keeps cameras from being found", &MakeDoctorCommand},
    {"completion", "Print the completion for a shell", &MakeCompletionCommand},
    {"help", "Explain a command", &MakeHelpCommand},
    {"complete", "", &MakeCompleteCommand},
    {"manual-pages", "", &MakeManualPagesCommand},
};

constexpr CommandGroup kGroups[] = {
    {"config", "The port configuration file: path, show, check, init"},
};

}  // namespace

std::span<const CommandEntry> CommandTable() {
    return kCommands;
}

std::span<const CommandGroup> CommandGroups() {
    return kGroups;
}

}  // namespace tools
