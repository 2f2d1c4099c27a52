/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How long the plug-in's own code stays in memory
 */

#include "VantoCLSer/base/ModuleHold.h"

#include <exception>
#include <mutex>

#include "os/Library.h"
#include "os/LockName.h"

namespace Vanto {

namespace {

std::mutex g_lock;
[[maybe_unused]] const os::LockName g_lockName(&g_lock, "module hold");
os::Library g_self;
bool g_isKept = false;

}  // namespace

void HoldModule() noexcept {
    try {
        const std::lock_guard lock(g_lock);
        if (!g_isKept && !g_self.IsLoaded())
            g_self = os::Library(os::PathOfCode(reinterpret_cast<const void*>(&HoldModule)));
    } catch (const std::exception&) {
        // A program, which is never unloaded.
    }
}

void ReleaseModule() noexcept {
    const std::lock_guard lock(g_lock);
    g_self.Unload();
}

void KeepModule() noexcept {
    const std::lock_guard lock(g_lock);
    g_isKept = g_isKept || g_self.IsLoaded();
    g_self.Keep();
}

}  // namespace Vanto
