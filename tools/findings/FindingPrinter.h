/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Findings as compilers print them, and as JSON
 */
#pragma once

#include <string>

#include "findings/Findings.h"

namespace tools {

class Output;

void PrintFindings(Output& output, const std::string& file, const Findings& findings, const std::string& summary);
void PrintFindingsAsJson(Output& output, const std::string& file, const Findings& findings);
/// As annotations of a continuous integration of GitHub's kind.
void PrintFindingsAsAnnotations(Output& output, const std::string& file, const Findings& findings);

/// "error", "warning" or "note".
const char* NameOf(Severity severity);

}  // namespace tools
