/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the commands take, as help, manual pages and the completion of shells show it
 */
#include "commands/CommandModel.h"

namespace tools {

std::string CommandModel::Usage() const {
    std::string usage = "vanto-cl " + name + (options.empty() ? "" : " [OPTIONS]");
    for (const ArgumentModel& argument : arguments) {
        const std::string text = argument.name + (argument.repeats ? "..." : "");
        usage += argument.isRequired ? " " + text : " [" + text + "]";
    }
    return usage;
}

}  // namespace tools
