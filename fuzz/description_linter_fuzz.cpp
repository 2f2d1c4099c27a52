/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Feeds descriptions to the linter and looks at its findings
 */

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "description/Linter.h"
#include "error/ExitCode.h"

namespace {

void Require(bool holds) {
    if (!holds)
        __builtin_trap();
}

// Whoever reads a finding can look the rule up and go to the place.
void Check(const tools::Finding& finding, std::size_t lines) {
    Require(!finding.rule.empty() && !finding.text.empty());
    Require(finding.place.line <= lines);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    try {
        const tools::Findings findings = tools::LintDescription(text);
        for (const tools::Finding& finding : findings)
            Check(finding, lines);
    } catch (const tools::ToolError&) {
        return 0;  // it is no description
    }
    return 0;
}
