/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tick count, debugger output and settings of the machine on POSIX systems
 */

#include "os/System.h"

#include <chrono>
#include <cstdio>

namespace os {

/// Milliseconds of a clock that only goes forward; wraps around after 2^32.
std::uint32_t TickCount() noexcept {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

/// Shows a text to whoever debugs the process: it goes to standard error as it is.
void WriteToDebugger(const char* text) noexcept {
    if (text != nullptr)
        std::fputs(text, stderr);
}

/// A text of the machine's registry. There is none on this system: nothing.
std::optional<std::string> MachineSetting(const char* /*key*/, const char* /*name*/) {
    return std::nullopt;
}

}  // namespace os
