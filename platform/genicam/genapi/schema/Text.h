/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts of a description: blanks, numbers, characters that are not UTF-8
 */
#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace GenApi {

constexpr bool IsBlank(char character) noexcept {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r' || character == '\f' ||
           character == '\v';
}

/// True when two texts of one length are the same. Most texts are short: no function is called for those.
inline bool AreEqual(const char* left, const char* right, std::size_t length) noexcept {
    const auto differ = [&]<class Word>(Word, std::size_t at) {
        Word first;
        Word second;
        std::memcpy(&first, left + at, sizeof(Word));
        std::memcpy(&second, right + at, sizeof(Word));
        return first != second;
    };
    if (length > 16)
        return std::memcmp(left, right, length) == 0;
    // Two words cover the text, and share some of it.
    if (length >= 8)
        return !differ(std::uint64_t{}, 0) && !differ(std::uint64_t{}, length - 8);
    if (length >= 4)
        return !differ(std::uint32_t{}, 0) && !differ(std::uint32_t{}, length - 4);
    return length == 0 ||
           (left[0] == right[0] && left[length / 2] == right[length / 2] && left[length - 1] == right[length - 1]);
}
inline bool AreEqual(std::string_view left, std::string_view right) noexcept {
    return left.size() == right.size() && AreEqual(left.data(), right.data(), left.size());
}

/// The text, cut when it is longer than a message should be: names and values in a file may be of any length.
std::string Shortened(std::string_view text);

/// One text of several, each cut when it is longer than a message should be.
std::string Joined(std::initializer_list<std::string_view> pieces);

/// The text without blanks at its ends.
inline std::string_view Trimmed(std::string_view text) noexcept {
    // All blanks lie up to the space; most texts begin and end with something else.
    if (!text.empty() && text.front() > ' ' && text.back() > ' ')
        return text;
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// An integer: decimal or with 0x, with a sign or without. A hexadecimal number of 64 bits becomes the integer of the
/// same bits; a decimal one that does not fit is refused.
std::optional<std::int64_t> ParseInteger(std::string_view text) noexcept;
/// As ParseInteger; what lies above the largest integer becomes that. For maxima, which say "no more than".
std::optional<std::int64_t> ParseSaturated(std::string_view text) noexcept;
/// A floating-point number, or an integer as ParseInteger takes it; INF and NaN are understood.
std::optional<double> ParseFloat(std::string_view text) noexcept;

/// Position of the first byte that is not part of a UTF-8 character, npos when there is none.
std::size_t FindInvalidUtf8(std::string_view text, std::size_t from = 0) noexcept;
/// The text with each byte that is no UTF-8 taken as a Latin-1 character.
std::string RepairUtf8(std::string_view text);
/// A Latin-1 text as UTF-8.
std::string Latin1ToUtf8(std::string_view text);

}  // namespace GenApi
