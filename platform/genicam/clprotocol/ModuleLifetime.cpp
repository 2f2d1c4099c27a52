/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How long the module's own code stays in memory
 */

#include "ModuleLifetime.h"

#include "os/Library.h"

namespace CLProtocol {

namespace {

bool LoadOnceMore() noexcept {
    try {
        os::Library self(os::PathOfCode(reinterpret_cast<const void*>(&KeepModuleLoaded)));
        self.Keep();
        return true;
    } catch (const std::exception&) {  // part of a program, which is never unloaded
        return false;
    }
}

}  // namespace

void KeepModuleLoaded() noexcept {
    static const bool isKept = LoadOnceMore();
    static_cast<void>(isKept);
}

}  // namespace CLProtocol
