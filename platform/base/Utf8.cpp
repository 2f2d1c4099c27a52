/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Characters in UTF-8 (RFC 3629)
 */

#include "base/Utf8.h"

#include <algorithm>

namespace base {

namespace {

constexpr unsigned kRest = 0x3F;  // the bits of a character in each byte behind the first

unsigned Byte(char character) noexcept {
    return static_cast<unsigned char>(character);
}

}  // namespace

std::size_t Utf8Length(std::string_view text) noexcept {
    if (text.empty())
        return 0;
    const unsigned lead = Byte(text[0]);
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : (lead >= 0xE0 ? 3 : 2);
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return 0;
    if (!std::ranges::all_of(text.substr(1, length - 1), [](char byte) { return (Byte(byte) & 0xC0) == 0x80; }))
        return 0;
    const unsigned second = Byte(text[1]);
    const bool refused = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                         (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
    return refused ? 0 : length;
}

char32_t DecodeUtf8(std::string_view character) noexcept {
    constexpr unsigned kLeading[] = {0x7F, 0x1F, 0x0F, 0x07};
    char32_t result = Byte(character.front()) & kLeading[character.size() - 1];
    for (const char byte : character.substr(1))
        result = (result << 6) | (Byte(byte) & kRest);
    return result;
}

void AppendUtf8(std::string& text, char32_t character) {
    const auto rest = [&](unsigned shift) { text += static_cast<char>(0x80 | ((character >> shift) & kRest)); };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | (character >> 6));
        rest(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0 | (character >> 12));
        rest(6);
        rest(0);
    } else {
        text += static_cast<char>(0xF0 | (character >> 18));
        rest(12);
        rest(6);
        rest(0);
    }
}

}  // namespace base
