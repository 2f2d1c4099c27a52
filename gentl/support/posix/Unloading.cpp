/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Threads run on until static objects have been destroyed, which close what is open
 */
#include "support/Unloading.h"

namespace gentl {

void KeepLoaded() noexcept {}

void LetUnload() noexcept {}

bool DoThreadsOutliveStatics() noexcept {
    return true;
}

}  // namespace gentl
