/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Processes are not copied here
 */
#include "support/ForkGuard.h"

namespace gentl {

void WatchForks() {}

bool IsForkedChild() noexcept {
    return false;
}

}  // namespace gentl
