/* SPDX-License-Identifier: Apache-2.0 */
/*
 * DescriptionBindings: the registry file that binds description and merge files to cameras
 */
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vanto/ConfigFileRegistry.h"

namespace Vanto {

/// The entries of one registry file. docs/description-bindings.md describes the file. Immutable.
class DescriptionBindings {
public:
    /// How narrow a pattern is: whether it is an exact text, and how many characters of its own it has.
    using Narrowness = std::pair<bool, std::size_t>;

    static constexpr std::size_t kKeys = 4;

    struct Entry {
        std::array<std::string, kKeys> patterns;  // serial number, model, vendor, device class
        CConfigFileRegistry::CBinding binding;
        std::size_t line = 0;

        bool Fits(const IProperties& info) const;
        std::array<Narrowness, kKeys> Rank() const;
    };

    explicit DescriptionBindings(const std::string& path);

    const Entry* Find(const IProperties& info) const;

private:
    std::string m_path;
    std::vector<Entry> m_entries;
};

}  // namespace Vanto
