/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The terminal behind a stream
 */
#include "system/Terminal.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <initializer_list>

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

/// Standard streams that the program was started without are occupied: else the line to the camera takes the place of
/// one, and the camera gets what is printed. Printing there goes on to fail.
void PrepareStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(stream, F_GETFD) == -1)
            static_cast<void>(::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
}

}  // namespace tools
