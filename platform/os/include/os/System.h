/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tick count, Shift key, debugger output, and processes
 */
#pragma once

#include <cstdint>

namespace os {

std::uint32_t TickCount() noexcept;
bool IsShiftKeyDown() noexcept;
void WriteToDebugger(const char* text) noexcept;

}  // namespace os
