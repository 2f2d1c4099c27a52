/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts within XML
 */
#include "base/XmlText.h"

namespace base {

/// The text as it stands between tags and within quotes of an attribute.
std::string XmlText(std::string_view text) {
    std::string result;
    for (const char character : text) {
        switch (character) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += character;
        }
    }
    return result;
}

}  // namespace base
