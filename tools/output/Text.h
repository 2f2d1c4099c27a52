/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Text from outside, made fit for a terminal, and likeness of words
 */
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "base/Text.h"
#include "base/Words.h"

namespace tools {

std::string Printable(std::string_view text);
std::string PrintableLines(std::string_view text);
std::size_t DisplayWidth(std::string_view text);
std::string Shortened(std::string_view text, std::size_t width);
std::string Wrapped(std::string_view text, std::size_t width, std::string_view indent, std::size_t column = 0);

using base::ClosestWord;
using base::EqualsIgnoringCase;
using base::Trimmed;
std::string DidYouMean(std::string_view word, std::span<const std::string> candidates);

}  // namespace tools
