/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Who the producer is
 */
#include "support/Identity.h"

#include "os/Library.h"

namespace gentl {

std::string ProducerVersion() {
    return VANTO_VERSION;
}

/// Path of the producer's own file, as the system has loaded it.
std::string ProducerPath() {
    return os::PathOfCode(reinterpret_cast<const void*>(&ProducerPath));
}

}  // namespace gentl
