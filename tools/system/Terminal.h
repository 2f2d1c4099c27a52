/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The terminal behind a stream
 */
#pragma once

#include <cstdio>

namespace tools {

bool IsTerminal(std::FILE* stream);
/// Columns of the terminal behind a stream, 80 when it does not tell; 0 when there is no terminal.
int TerminalWidth(std::FILE* stream);
/// Whether the terminal behind a stream says that it shows sixel images. It is asked, and has a second to answer; what
/// is typed meanwhile is lost. False where there is no terminal, or this process may not ask it.
bool ShowsSixels(std::FILE* stream);
/// Makes standard output and error take bytes and colours as they are. Call it first.
void PrepareStreams();

}  // namespace tools
