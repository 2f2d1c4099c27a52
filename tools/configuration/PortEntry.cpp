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

/// Keeps a finding; beyond the first hundred they are only counted, errors aside, so that a verdict stays right.
void PortConfiguration::Add(Finding finding) {
    if (findings.size() < kMostFindings || (finding.severity == Severity::kError && !HasErrors()))
        findings.push_back(std::move(finding));
    else
        ++findingsLeftOut;
}

bool PortConfiguration::HasErrors() const {
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.severity == Severity::kError; });
}

bool PortConfiguration::EnablesAny() const {
    return std::any_of(entries.begin(), entries.end(),
                       [](const PortEntry& entry) { return entry.IsEnabled() && !entry.id.text.empty(); });
}

}  // namespace tools
