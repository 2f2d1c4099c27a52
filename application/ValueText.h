/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values as people write them
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vanto {

std::optional<std::int64_t> IntegerFromText(std::string_view text, std::string_view unit);
std::optional<double> NumberFromText(std::string_view text, std::string_view unit);
std::optional<bool> SwitchFromText(std::string_view text);
std::optional<std::vector<std::uint8_t>> BytesFromText(std::string_view text);

std::string_view Trimmed(std::string_view text);
bool EqualsIgnoringCase(std::string_view left, std::string_view right);
std::string SimilarWord(const std::string& word, const std::vector<std::string>& candidates);

}  // namespace Vanto
