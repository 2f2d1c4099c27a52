/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts with '#' as tokens between '#'
 */

#include "base/TokenEscape.h"

namespace base {

namespace {

constexpr std::string_view kEscapedSeparator = "%23";
constexpr std::string_view kEscapedPercent = "%25";

bool IsEscape(std::string_view text) {
    return text.starts_with(kEscapedSeparator) || text.starts_with(kEscapedPercent);
}

}  // namespace

/**
 * \brief A text as a token of a DeviceID
 * \return The text with "%23" for each '#'. A '%' becomes "%25" only where it would be read as an escape: all other
 * texts stay as they are. Never longer than three times the text
 */
std::string EscapeToken(std::string_view text) {
    std::string token;
    for (; !text.empty(); text.remove_prefix(1)) {
        if (text.front() == '#')
            token += kEscapedSeparator;
        else if (IsEscape(text))
            token += kEscapedPercent;
        else
            token += text.front();
    }
    return token;
}

/// The text that EscapeToken made \a token of.
std::string UnescapeToken(std::string_view token) {
    std::string text;
    while (!token.empty()) {
        const bool isEscape = IsEscape(token);
        text += !isEscape ? token.front() : token.starts_with(kEscapedSeparator) ? '#' : '%';
        token.remove_prefix(isEscape ? kEscapedPercent.size() : 1);
    }
    return text;
}

}  // namespace base
