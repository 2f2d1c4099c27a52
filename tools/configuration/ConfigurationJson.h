/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Port configuration entries and findings as JSON
 */
#pragma once

#include "configuration/PortEntry.h"
#include "output/Json.h"

namespace tools {

Json ToJson(const PortEntry& entry);
Json ToJson(const Finding& finding);
const char* SeverityName(Severity severity);

}  // namespace tools
