/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The port configuration file as it was read, and what was found in it
 */
#include "configuration/PortConfiguration.h"

#include <algorithm>

namespace tools {

bool PortConfiguration::EnablesAny() const {
    return std::any_of(entries.begin(), entries.end(),
                       [](const PortEntry& entry) { return entry.IsEnabled() && !entry.id.text.empty(); });
}

}  // namespace tools
