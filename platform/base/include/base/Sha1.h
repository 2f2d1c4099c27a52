/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SHA-1, as the manifest of a GenCP camera gives it for a file
 */
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace base {

using Sha1Sum = std::array<std::uint8_t, 20>;

Sha1Sum Sha1(std::span<const std::uint8_t> bytes);
Sha1Sum Sha1(std::string_view bytes);

/// 40 lower-case hexadecimal digits.
std::string ToText(const Sha1Sum& sum);

}  // namespace base
