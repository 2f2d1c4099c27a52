/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What is wrong with a file, and where
 */
#include "findings/Findings.h"

#include <algorithm>
#include <tuple>

namespace tools {

/// Keeps a finding; beyond the most that are kept they are only counted, the first error aside.
void Findings::Add(Finding finding) {
    const Severity severity = finding.severity;
    if (m_kept.size() < kMost || (severity == Severity::kError && m_errors == 0))
        m_kept.push_back(std::move(finding));
    ++(severity == Severity::kError ? m_errors : severity == Severity::kWarning ? m_warnings : m_notes);
}

/// Orders by line and column; what concerns the whole file comes last.
void Findings::SortByPlace() {
    std::stable_sort(m_kept.begin(), m_kept.end(), [](const Finding& left, const Finding& right) {
        return std::tuple(left.place.line == 0, left.place.line, left.place.column) <
               std::tuple(right.place.line == 0, right.place.line, right.place.column);
    });
}

}  // namespace tools
