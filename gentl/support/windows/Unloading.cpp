/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Static objects are destroyed with the loader's lock held, without which no thread ends: T that unloads the file would
 * wait for D that ends, and D for the lock. So the file stays loaded while it has threads, and its static objects are
 * destroyed at the end of the process only, which has ended all other threads before, with whatever locks they held.
 */
#include "support/Unloading.h"

#include <windows.h>

namespace gentl {

namespace {

HMODULE OwnFile(DWORD flags) noexcept {
    HMODULE file = nullptr;
    ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags, reinterpret_cast<const char*>(&KeepLoaded),
                         &file);
    return file;
}

}  // namespace

void KeepLoaded() noexcept {
    OwnFile(0);
}

/// The caller's own reference remains.
void LetUnload() noexcept {
    if (const HMODULE file = OwnFile(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT))
        ::FreeLibrary(file);
}

bool DoThreadsOutliveStatics() noexcept {
    return false;
}

}  // namespace gentl
