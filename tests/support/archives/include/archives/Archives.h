/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Makes zip archives for tests
 */
#pragma once

#include <string>
#include <utility>
#include <vector>

/// Bytes of an archive with these files: name and content.
std::string MakeZip(const std::vector<std::pair<std::string, std::string>>& files);
