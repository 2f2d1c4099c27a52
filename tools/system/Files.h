/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Whole files
 */
#pragma once

#include <filesystem>
#include <string_view>

namespace tools {

void WriteFile(const std::filesystem::path& path, std::string_view text);

}  // namespace tools
