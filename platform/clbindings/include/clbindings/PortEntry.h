/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the port configuration file says of one port, with the place of everything in it
 */
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "base/Place.h"

namespace Vanto {

/// A value and where its element begins; a line of 0 means that there is no such element.
struct PlacedValue {
    std::string text;
    base::Place place;
    bool IsThere() const noexcept { return place.line != 0; }
};

/// One Port element, those without an ID included.
struct PortEntry {
    base::Place place;
    PlacedValue id;
    PlacedValue manufacturer;
    PlacedValue family;
    PlacedValue model;
    PlacedValue deviceSpecificString;
    PlacedValue baudRate;
    PlacedValue enabled;

    bool IsEnabled() const;
};

/// In document order; several entries may carry the same ID.
using PortEntries = std::vector<PortEntry>;

/// An element of a Port that means something.
struct PortField {
    const char* name;
    PlacedValue PortEntry::*value;
};
inline constexpr std::array<PortField, 7> kPortFields{{{"ID", &PortEntry::id},
                                                       {"Enabled", &PortEntry::enabled},
                                                       {"Manufacturer", &PortEntry::manufacturer},
                                                       {"Family", &PortEntry::family},
                                                       {"Model", &PortEntry::model},
                                                       {"DeviceSpecificString", &PortEntry::deviceSpecificString},
                                                       {"BaudRate", &PortEntry::baudRate}}};

const PortField* FindPortField(std::string_view elementName);

}  // namespace Vanto
