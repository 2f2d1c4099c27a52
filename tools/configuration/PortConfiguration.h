/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The port configuration file as it was read, and what was found in it
 */
#pragma once

#include "clbindings/PortEntry.h"
#include "findings/Findings.h"

namespace tools {

using Vanto::PlacedValue;
using Vanto::PortEntry;

struct PortConfiguration {
    Vanto::PortEntries entries;  ///< those that the transport layer drops included
    Findings findings;
    bool wellFormed = false;

    /// Whether some entry with an ID is enabled.
    bool EnablesAny() const;
};

}  // namespace tools
