/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts of a description: blanks, numbers, characters that are not UTF-8
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace GenApi {

constexpr bool IsBlank(char character) noexcept {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r' || character == '\f' ||
           character == '\v';
}

/// The text, cut when it is longer than a message should be: names and values in a file may be of any length.
std::string Shortened(std::string_view text);

/// The text without blanks at its ends.
std::string_view Trimmed(std::string_view text) noexcept;

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

/// Appends one character to a UTF-8 text.
void AppendUtf8(std::string& text, std::uint32_t character);

}  // namespace GenApi
