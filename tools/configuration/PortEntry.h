/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the port configuration file says of one port, and what was found in the file
 */
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tools {

/// A place in a text file, both counted from 1. Columns count characters.
struct Place {
    std::uint64_t line = 0;
    std::uint64_t column = 0;
};

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

enum class Severity { kError, kWarning };

/// Something wrong with the file. An error keeps a camera from being found or a setting from being used.
struct Finding {
    Severity severity = Severity::kError;
    Place place;  ///< line 0: the file as a whole
    std::string text;
    std::string hint;
};

/// The file as it was read.
struct PortConfiguration {
    std::vector<PortEntry> entries;
    std::vector<Finding> findings;
    std::uint64_t findingsLeftOut = 0;  ///< beyond kMostFindings
    bool wellFormed = false;

    static constexpr std::size_t kMostFindings = 100;

    void Add(Finding finding);
    bool HasErrors() const;
    /// Whether some entry with an ID is enabled.
    bool EnablesAny() const;
};

}  // namespace tools
