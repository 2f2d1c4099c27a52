/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the port configuration file says of one port, with the place of everything in it
 */

#include "clbindings/PortEntry.h"

#include <algorithm>

#include "base/Text.h"

namespace Vanto {

/// True for "yes" and "true" in any case, and for "1".
bool PortEntry::IsEnabled() const {
    return base::EqualsIgnoringCase(enabled.text, "yes") || base::EqualsIgnoringCase(enabled.text, "true") ||
           enabled.text == "1";
}

/// The field of an element; null when the element means nothing. Only ID may be written in any case.
const PortField* FindPortField(std::string_view elementName) {
    const auto* const found = std::ranges::find_if(kPortFields, [&](const PortField& field) {
        return field.value == &PortEntry::id ? base::EqualsIgnoringCase(elementName, field.name)
                                             : elementName == field.name;
    });
    return found == kPortFields.end() ? nullptr : found;
}

}  // namespace Vanto
