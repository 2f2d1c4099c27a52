/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl: chooses the command, runs it, reports how it ended
 */
#pragma once

#include "error/ExitCode.h"

namespace tools {

class Output;

ExitCode RunApplication(int argumentCount, const char* const* arguments, Output& output);

}  // namespace tools
