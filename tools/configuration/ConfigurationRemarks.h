/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds what the transport layer silently passes over in a port configuration
 */
#pragma once

#include "clbindings/BoundedXmlParser.h"
#include "findings/Findings.h"

namespace tools {

void AddRemarks(const Vanto::BoundedXmlParser& parser, Findings& findings);

}  // namespace tools
