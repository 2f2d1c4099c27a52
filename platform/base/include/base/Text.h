/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts: their parts and their letters
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace base {

/// The parts between separators; at least one, which may be empty.
std::vector<std::string> Split(std::string_view text, char separator);
/// The parts between separators that are not empty.
std::vector<std::string> SplitWithoutEmpty(std::string_view text, char separator);

/// Without blanks, tabulators and line ends at its ends.
std::string_view Trimmed(std::string_view text) noexcept;

// Of letters only those of ASCII have two cases here: names of features and files, and words of options.
char LowerCase(char letter) noexcept;
std::string LowerCase(std::string_view text);
bool EqualsIgnoringCase(std::string_view left, std::string_view right) noexcept;

/// Whether a character is a control character of ASCII.
bool IsControl(char character) noexcept;

/// Two lower-case hexadecimal digits for each byte.
std::string HexText(std::span<const std::uint8_t> bytes);

}  // namespace base
