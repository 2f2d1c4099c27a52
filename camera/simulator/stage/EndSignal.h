/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Waits until somebody wants the program to end
 */
#pragma once

namespace MarlowSim {

/// Has SIGTERM, SIGINT and SIGHUP wait for WaitForEnd. Called before any thread is made, which then does so, too.
void KeepEndSignals();

/// \param[in] untilStdinCloses Whether the end of the standard input is a reason as well
void WaitForEnd(bool untilStdinCloses);

}  // namespace MarlowSim
