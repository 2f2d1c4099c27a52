/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Settings of a camera as the text of a file
 */
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace base {

/// A text that holds no settings; says file and line.
class SettingsError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Selectors and their values, outer ones first.
using SelectorState = std::vector<std::pair<std::string, std::string>>;

/// One feature's value, with the selectors for which it counts.
struct Setting {
    std::string name;
    std::string text;
    SelectorState selectors;
    std::uint64_t line = 0;  ///< in the file it came from
};

std::string SettingsText(const std::string& comment, const std::vector<Setting>& settings);
std::vector<Setting> ParseSettings(const std::string& fileName, std::string_view text);
std::string SelectorText(const SelectorState& selectors);

}  // namespace base
