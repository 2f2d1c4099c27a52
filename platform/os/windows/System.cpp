/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tick count, Shift key, debugger output and settings of the machine on Windows
 */

#include "os/System.h"

#include <windows.h>

#include <array>

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

/**
 * \brief A text of the machine's registry
 * \param[in] key Key below HKEY_LOCAL_MACHINE
 * \param[in] name Name of the value
 * \return The text; nothing when there is no such value, it is no text or longer than 4095 bytes
 */
std::optional<std::string> MachineSetting(const char* key, const char* name) {
    std::array<char, 4096> text{};
    DWORD size = static_cast<DWORD>(text.size());
    if (::RegGetValueA(HKEY_LOCAL_MACHINE, key, name, RRF_RT_REG_SZ, nullptr, text.data(), &size) != ERROR_SUCCESS)
        return std::nullopt;
    return std::string(text.data());
}

}  // namespace os
