/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts from anywhere as one printable line
 */

#include "log/EscapeText.h"

#include <fmt/format.h>

namespace Vanto {

namespace {

// The control characters U+0080 to U+009F are two bytes in UTF-8, and terminals obey them, too.
bool IsUpperControl(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]) == 0xC2 && at + 1 < text.size() &&
           static_cast<unsigned char>(text[at + 1]) >= 0x80 && static_cast<unsigned char>(text[at + 1]) < 0xA0;
}

void AppendEscaped(std::string& result, unsigned char character) {
    switch (character) {
        case '\n':
            result += "\\n";
            break;
        case '\r':
            result += "\\r";
            break;
        case '\t':
            result += "\\t";
            break;
        default:
            result += fmt::format("\\x{:02x}", character);
    }
}

}  // namespace

/**
 * \brief Replace every control character by an escape, so that a text can't forge lines or command a terminal
 */
std::string EscapeControlCharacters(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto character = static_cast<unsigned char>(text[at]);
        if (IsUpperControl(text, at)) {
            AppendEscaped(result, character);
            AppendEscaped(result, static_cast<unsigned char>(text[++at]));
        } else if (character < 0x20 || character == 0x7F) {
            AppendEscaped(result, character);
        } else {
            result += text[at];
        }
    }
    return result;
}

}  // namespace Vanto
