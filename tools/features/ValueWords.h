/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values as people type them
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tools {

std::optional<std::int64_t> IntegerFromWord(std::string_view word);
std::optional<double> NumberFromWord(std::string_view word);
std::optional<bool> SwitchFromWord(std::string_view word);
std::optional<std::vector<std::uint8_t>> BytesFromWord(std::string_view word);
std::string HexText(const std::vector<std::uint8_t>& bytes);
std::string_view WithoutUnit(std::string_view word, std::string_view unit);

}  // namespace tools
