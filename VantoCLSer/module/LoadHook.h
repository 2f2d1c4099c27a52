/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The load and unload hook of the library
 */
#pragma once

#include <cstdint>

namespace Vanto {

/// Why the system calls the hook; the numbers are those of the Windows loader.
enum LoadReason : std::uint32_t { kProcessDetach = 0, kProcessAttach = 1, kThreadAttach = 2, kThreadDetach = 3 };

bool OnLoadNotification(void* module, std::uint32_t reason) noexcept;
void* GetModuleHandleOfPlugin() noexcept;

/// Tells the system to leave out the notifications about threads; nothing to do where there are none.
void SwitchOffThreadNotifications(void* module) noexcept;

}  // namespace Vanto
