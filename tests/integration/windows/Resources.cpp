/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Handles of this process, those of its threads among them
 */

#include "../Resources.h"

#include <windows.h>

#include <stdexcept>

namespace integration {

std::size_t Resources() {
    DWORD handles = 0;
    if (::GetProcessHandleCount(::GetCurrentProcess(), &handles) == 0)
        throw std::runtime_error("the system does not count handles");
    return handles;
}

}  // namespace integration
