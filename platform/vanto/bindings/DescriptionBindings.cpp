/* SPDX-License-Identifier: Apache-2.0 */
/*
 * DescriptionBindings: the registry file that binds description and merge files to cameras
 */

#include "bindings/DescriptionBindings.h"

#include <algorithm>

#include "Base/GCException.h"
#include "base/Wildcard.h"
#include "bindings/DescriptionBindingsReader.h"

namespace Vanto {

namespace {

DescriptionBindings::Narrowness NarrownessOf(const std::string& pattern) {
    const auto wildcards = std::count_if(pattern.begin(), pattern.end(), [](char c) { return c == '*' || c == '?'; });
    return {wildcards == 0, pattern.size() - static_cast<std::size_t>(wildcards)};
}

}  // namespace

/**
 * \brief Read a registry file
 * \throw RuntimeException It can't be read or is malformed; names the file, line, column and the fault
 */
DescriptionBindings::DescriptionBindings(const std::string& path)
    : m_path(path), m_entries(DescriptionBindingsReader(path).Read()) {}

/**
 * \brief The most particular entry that fits a record: first by serial number, then model, vendor and device class
 * \return Null when none fits
 * \throw RuntimeException Two entries are equally particular
 */
const DescriptionBindings::Entry* DescriptionBindings::Find(const IProperties& info) const {
    const Entry* best = nullptr;
    const Entry* rival = nullptr;
    for (const Entry& entry : m_entries) {
        if (!entry.Fits(info))
            continue;
        if (best == nullptr || entry.Rank() > best->Rank()) {
            best = &entry;
            rival = nullptr;
        } else if (entry.Rank() == best->Rank()) {
            rival = &entry;
        }
    }
    if (rival != nullptr) {
        throw RUNTIME_EXCEPTION(
            "The registry file '%s' is ambiguous: the entries in lines %u and %u fit a camera equally well. Make one "
            "of "
            "them more particular.",
            m_path, best->line, rival->line);
    }
    return best;
}

bool DescriptionBindings::Entry::Fits(const IProperties& info) const {
    static constexpr std::array<const char*, kKeys> kProperties{"SerialNumber", "ModelName", "VendorName",
                                                                "DeviceClass"};
    for (std::size_t key = 0; key < kKeys; ++key) {
        gcstring value;
        if (!info.GetPropertyValue(kProperties[key], value))
            value.clear();
        if (!base::MatchesWildcard(patterns[key], value.view()))
            return false;
    }
    return true;
}

std::array<DescriptionBindings::Narrowness, DescriptionBindings::kKeys> DescriptionBindings::Entry::Rank() const {
    std::array<Narrowness, kKeys> rank;
    std::transform(patterns.begin(), patterns.end(), rank.begin(), NarrownessOf);
    return rank;
}

}  // namespace Vanto
