/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Likeness of words
 */
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace base {

std::size_t EditDistance(std::string_view left, std::string_view right);
std::string ClosestWord(std::string_view word, std::span<const std::string> candidates);

}  // namespace base
