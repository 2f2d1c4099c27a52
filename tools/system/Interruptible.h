/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a command that watches for interruptions does between two steps
 */
#pragma once

#include <chrono>

#include "system/Interruption.h"

namespace tools {

/// Ends the command when somebody asked for it: throws a ToolError with kInterrupted.
void ThrowIfInterrupted();
/// Sleeps; false when somebody asked to end meanwhile.
bool SleepUninterrupted(std::chrono::milliseconds duration);

}  // namespace tools
