/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values and texts of a configuration ROM (IEEE 1212)
 */
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace GenApi {

/// The immediate value of the first entry of a key in the root directory, or in a directory below it.
std::optional<std::int64_t> FindRomValue(std::span<const std::uint8_t> rom, std::int64_t key);
/// The text of the first textual descriptor leaf of a key.
std::optional<std::string> FindRomText(std::span<const std::uint8_t> rom, std::int64_t key);

}  // namespace GenApi
