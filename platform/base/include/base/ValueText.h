/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values as people write them
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace base {

std::optional<std::int64_t> IntegerFromText(std::string_view text);
std::optional<std::int64_t> IntegerFromText(std::string_view text, std::string_view unit);
std::optional<double> NumberFromText(std::string_view text, std::string_view unit);
std::optional<bool> SwitchFromText(std::string_view text);
std::optional<std::vector<std::uint8_t>> BytesFromText(std::string_view text);

}  // namespace base
