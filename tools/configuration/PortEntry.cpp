/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the port configuration file says of one port, and what was found in the file
 */
#include "configuration/PortEntry.h"

#include <algorithm>

#include "output/Text.h"

namespace tools {

/// True for "yes", "true" and "1" in any case, as the transport layer decides.
bool PortEntry::IsEnabled() const {
    return EqualsIgnoringCase(enabled.text, "yes") || EqualsIgnoringCase(enabled.text, "true") || enabled.text == "1";
}

bool PortConfiguration::EnablesAny() const {
    return std::any_of(entries.begin(), entries.end(),
                       [](const PortEntry& entry) { return entry.IsEnabled() && !entry.id.text.empty(); });
}

}  // namespace tools
