/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The load and unload hook of the library
 */

#include "VantoCLSer/module/LoadHook.h"

#include <atomic>

#include "os/System.h"

namespace Vanto {

namespace {

std::atomic<void*> g_module{nullptr};

}  // namespace

/**
 * \brief Record the module handle while the library is attached to the process
 * \param[in] module The library's handle
 * \param[in] reason A LoadReason; any other number is reported to the debugger
 * \return true, always
 * \context The system's loader, with its lock held: nothing else may be done here
 */
bool OnLoadNotification(void* module, std::uint32_t reason) noexcept {
    switch (reason) {
        case kProcessAttach:
            g_module = module;
            SwitchOffThreadNotifications(module);
            break;
        case kProcessDetach:
            g_module = nullptr;
            break;
        case kThreadAttach:
        case kThreadDetach:
            break;
        default:
            os::WriteToDebugger("*** Invalid ul_reason_for_call!!! ***");
    }
    return true;
}

void* GetModuleHandleOfPlugin() noexcept {
    return g_module;
}

}  // namespace Vanto
