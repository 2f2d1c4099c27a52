/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The commands of vanto-cl, in the order of the help
 */
#include "commands/Command.h"
#include "commands/CompleteCommand.h"
#include "commands/ConfigCheckCommand.h"
#include "commands/ConfigInitCommand.h"
#include "commands/ConfigPathCommand.h"
#include "commands/ConfigShowCommand.h"
#include "commands/DescribeCommand.h"
#include "commands/DoctorCommand.h"
#include "commands/ExecCommand.h"
#include "commands/FeaturesCommand.h"
#include "commands/GetCommand.h"
#include "commands/GrabCommand.h"
#include "commands/ListCommand.h"
#include "commands/LoadCommand.h"
#include "commands/PortsCommand.h"
#include "commands/ReadCommand.h"
#include "commands/SaveCommand.h"
#include "commands/SetCommand.h"
#include "commands/WatchCommand.h"
#include "commands/WriteCommand.h"
#include "commands/XmlCommand.h"

namespace tools {

namespace {

template <class Made>
std::unique_ptr<Command> Make() {
    return std::make_unique<Made>();
}

constexpr CommandEntry kCommands[] = {
    {"list", "List the cameras, or say why there are none", &Make<ListCommand>},
    {"ports", "List the serial ports of this machine and their configuration", &Make<PortsCommand>},
    {"xml", "Fetch a camera's own description", &Make<XmlCommand>},
    {"features", "List a camera's features with their values", &Make<FeaturesCommand>},
    {"get", "Print the values of features", &Make<GetCommand>},
    {"set", "Change features, all or none", &Make<SetCommand>},
    {"exec", "Execute a command of a camera", &Make<ExecCommand>},
    {"grab", "Take images and save them", &Make<GrabCommand>},
    {"watch", "Print features whenever they change", &Make<WatchCommand>},
    {"save", "Save a camera's settings in a file", &Make<SaveCommand>},
    {"load", "Set a camera as a file says", &Make<LoadCommand>},
    {"read", "Read a camera's registers", &Make<ReadCommand>},
    {"write", "Write a camera's registers", &Make<WriteCommand>},
    {"config path", "Say where the file is looked for, and why there", &Make<ConfigPathCommand>},
    {"config show", "Show what the file says", &Make<ConfigShowCommand>},
    {"config check", "Say what is wrong with the file, with line and column", &Make<ConfigCheckCommand>},
    {"config init", "Write a new file for the ports of this machine", &Make<ConfigInitCommand>},
    {"describe", "Show or check a camera description from a file", &Make<DescribeCommand>},
    {"doctor", "Look for what keeps cameras from being found", &Make<DoctorCommand>},
    {"complete", "", &Make<CompleteCommand>},
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
