/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Command lines of child processes
 */
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tools {

/// Program and arguments in one line, as the C library of the child takes it apart again.
std::wstring CommandLineOf(const std::filesystem::path& program, const std::vector<std::string>& arguments);

}  // namespace tools
