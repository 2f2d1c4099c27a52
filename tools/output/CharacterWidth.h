/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How many columns a terminal gives to a character
 */
#pragma once

namespace tools {

/// 0 for marks that stand on the character before, 2 for the wide characters of East Asia and for pictures, else 1.
/// The ranges are those of Unicode 15, EastAsianWidth.txt (W and F) and the categories Mn and Me of what is written
/// from left to right.
unsigned CharacterWidth(char32_t character) noexcept;

}  // namespace tools
