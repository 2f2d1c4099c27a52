/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tick count, Shift key, debugger output, and settings of the machine
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace os {

std::uint32_t TickCount() noexcept;
bool IsShiftKeyDown() noexcept;
void WriteToDebugger(const char* text) noexcept;
std::optional<std::string> MachineSetting(const char* key, const char* name);

}  // namespace os
