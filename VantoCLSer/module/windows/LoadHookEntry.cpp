/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The entry function that the Windows loader calls
 */

#include <windows.h>

#include "VantoCLSer/module/LoadHook.h"

namespace Vanto {

void SwitchOffThreadNotifications(void* module) noexcept {
    DisableThreadLibraryCalls(static_cast<HMODULE>(module));
}

}  // namespace Vanto

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    return Vanto::OnLoadNotification(module, reason) ? TRUE : FALSE;
}
