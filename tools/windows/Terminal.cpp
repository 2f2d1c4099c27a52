/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The console behind a stream
 */
#include "system/Terminal.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <initializer_list>

namespace tools {

namespace {

HANDLE HandleOf(std::FILE* stream) {
    return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
}

}  // namespace

bool IsTerminal(std::FILE* stream) {
    DWORD mode = 0;
    return ::GetConsoleMode(HandleOf(stream), &mode) != 0;
}

int TerminalWidth(std::FILE* stream) {
    if (!IsTerminal(stream))
        return 0;
    constexpr int kUsualWidth = 80;
    CONSOLE_SCREEN_BUFFER_INFO screen{};
    if (::GetConsoleScreenBufferInfo(HandleOf(stream), &screen) == 0)
        return kUsualWidth;
    return screen.srWindow.Right - screen.srWindow.Left + 1;
}

void PrepareStreams() {
    for (std::FILE* stream : {stdout, stderr}) {
        // Data goes out as it is: what is redirected into a file must not get carriage returns.
        ::_setmode(::_fileno(stream), _O_BINARY);
        DWORD mode = 0;
        if (::GetConsoleMode(HandleOf(stream), &mode) != 0)
            ::SetConsoleMode(HandleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
}

}  // namespace tools
