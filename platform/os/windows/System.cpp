/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tick count, Shift key and debugger output on Windows
 */

#include "os/System.h"

#include <windows.h>

namespace os {

/// Milliseconds of a clock that only goes forward; wraps around after 2^32.
std::uint32_t TickCount() noexcept {
    return ::GetTickCount();
}

/// Whether a Shift key is held down at this moment.
bool IsShiftKeyDown() noexcept {
    constexpr unsigned kDown = 0x8000;
    return (static_cast<unsigned short>(::GetAsyncKeyState(VK_SHIFT)) & kDown) != 0;
}

/// Shows a text to the debugger that is attached to the process, if there is one.
void WriteToDebugger(const char* text) noexcept {
    if (text != nullptr)
        ::OutputDebugStringA(text);
}

}  // namespace os
