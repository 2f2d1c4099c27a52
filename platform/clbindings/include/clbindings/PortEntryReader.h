/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finds the ports of a port configuration that was parsed
 */
#pragma once

#include "clbindings/BoundedXmlParser.h"
#include "clbindings/PortEntry.h"

namespace Vanto {

PortEntries ReadPortEntries(const BoundedXmlParser& parser);
bool IsText(const xercesc::DOMNode& node);

}  // namespace Vanto
