/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The console behind a stream
 */
#include "system/Terminal.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdlib>
#include <initializer_list>

namespace tools {

namespace {

HANDLE HandleOf(std::FILE* stream) {
    return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
}

// The console's own code page is that of the shell, which goes on with it.
void WriteUtf8UntilExit() {
    static UINT before = 0;
    if (before != 0 || (before = ::GetConsoleOutputCP()) == 0)
        return;
    ::SetConsoleOutputCP(CP_UTF8);
    std::atexit([] { ::SetConsoleOutputCP(before); });
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

// Half blocks are shown by every console.
bool ShowsSixels(std::FILE*) {
    return false;
}

void PrepareStreams() {
    ::_setmode(::_fileno(stdin), _O_BINARY);
    for (std::FILE* stream : {stdout, stderr}) {
        // Data goes out as it is: what is redirected into a file must not get carriage returns.
        ::_setmode(::_fileno(stream), _O_BINARY);
        DWORD mode = 0;
        if (::GetConsoleMode(HandleOf(stream), &mode) == 0)
            continue;
        ::SetConsoleMode(HandleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
        WriteUtf8UntilExit();
    }
}

}  // namespace tools
