/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Findings of the linter in the Static Analysis Results Interchange Format (SARIF) 2.1.0
 */
#pragma once

#include <string>

#include "findings/Findings.h"
#include "output/Json.h"

namespace tools {

Json SarifOf(const std::string& file, const Findings& findings);

}  // namespace tools
