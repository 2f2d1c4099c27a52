/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Manual pages of the program and its commands
 */
#pragma once

#include <string>
#include <vector>

#include "commands/CommandModel.h"

namespace tools {

/// The page "vanto-cl-get.1" and its like as man shows it.
std::string ManualPage(const CommandModel& command);
/// The page "vanto-cl.1", which lists the others.
std::string MainManualPage(const std::vector<CommandModel>& commands);
/// "vanto-cl-config-check.1"
std::string ManualPageName(const CommandModel& command);

}  // namespace tools
