/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Standard input, output and error of programs that are started without them
 */
#pragma once

namespace os {

/// For the first line of a program: what is closed of the three is occupied, so that nothing that is opened later takes
/// its place and gets what is printed. Reading and writing there go on to fail.
void OccupyStandardStreams() noexcept;

/// Whether standard error was open when the code that asks was loaded. If not, whatever is there now is another's.
bool HadStandardError() noexcept;

}  // namespace os
