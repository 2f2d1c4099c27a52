/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds ttys: those of the machine's serial hardware, and those linked in folders
 */
#pragma once

#include <string>

#include "PortList.h"

namespace ClSerTty {

/// Where the kernel shows its devices; other folders in tests.
struct SystemFolders {
    std::string sys = "/sys";
    std::string dev = "/dev";
};

PortList MachineTtys(const SystemFolders& folders);
PortList LinkedTtys(const std::string& folder);

}  // namespace ClSerTty
