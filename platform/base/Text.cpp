/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts: their parts and their letters
 */
#include "base/Text.h"

#include <algorithm>

namespace base {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

}  // namespace

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return parts;
        text.remove_prefix(end + 1);
    }
}

std::vector<std::string> SplitWithoutEmpty(std::string_view text, char separator) {
    std::vector<std::string> parts = Split(text, separator);
    std::erase(parts, std::string());
    return parts;
}

std::string_view Trimmed(std::string_view text) noexcept {
    const std::size_t first = std::min(text.find_first_not_of(kBlanks), text.size());
    text.remove_prefix(first);
    text.remove_suffix(text.size() - (text.find_last_not_of(kBlanks) + 1));
    return text;
}

char LowerCase(char letter) noexcept {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string LowerCase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char letter) { return LowerCase(letter); });
    return result;
}

bool EqualsIgnoringCase(std::string_view left, std::string_view right) noexcept {
    return std::ranges::equal(left, right, [](char one, char other) { return LowerCase(one) == LowerCase(other); });
}

bool IsControl(char character) noexcept {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

std::string HexText(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

}  // namespace base
