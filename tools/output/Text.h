/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Text from outside, made fit for a terminal, and likeness of words
 */
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace tools {

std::string Printable(std::string_view text);
std::string PrintableLines(std::string_view text);
std::size_t DisplayWidth(std::string_view text);
std::string Shortened(std::string_view text, std::size_t width);
std::string Wrapped(std::string_view text, std::size_t width, std::string_view indent, std::size_t column = 0);

std::string_view Trimmed(std::string_view text);
bool EqualsIgnoringCase(std::string_view left, std::string_view right);
std::size_t EditDistance(std::string_view left, std::string_view right);
std::string ClosestWord(std::string_view word, std::span<const std::string> candidates);
std::string DidYouMean(std::string_view word, std::span<const std::string> candidates);

}  // namespace tools
