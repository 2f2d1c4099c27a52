/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the port configuration file says of one port, and what was found in the file
 */
#pragma once

#include <string>
#include <vector>

#include "findings/Findings.h"

namespace tools {

/// A value and where its element begins; a line of 0 means that there is no such element.
struct PlacedValue {
    std::string text;
    Place place;
    bool IsThere() const noexcept { return place.line != 0; }
};

/// One Port element, entries that the transport layer drops included.
struct PortEntry {
    Place place;
    PlacedValue id;
    PlacedValue manufacturer;
    PlacedValue family;
    PlacedValue model;
    PlacedValue deviceSpecificString;
    PlacedValue baudRate;
    PlacedValue enabled;

    bool IsEnabled() const;
};

/// The file as it was read.
struct PortConfiguration {
    std::vector<PortEntry> entries;
    Findings findings;
    bool wellFormed = false;

    /// Whether some entry with an ID is enabled.
    bool EnablesAny() const;
};

}  // namespace tools
