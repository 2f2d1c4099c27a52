/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The terminal behind a stream
 */
#include "system/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace tools {

bool IsTerminal(std::FILE* stream) {
    return ::isatty(::fileno(stream)) == 1;
}

int TerminalWidth(std::FILE* stream) {
    if (!IsTerminal(stream))
        return 0;
    constexpr int kUsualWidth = 80;
    winsize size{};
    if (::ioctl(::fileno(stream), TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return kUsualWidth;
    return size.ws_col;
}

void PrepareStreams() {}

}  // namespace tools
