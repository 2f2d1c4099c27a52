/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Lists of folders in which the module looks for libraries
 */
#pragma once

#include <string>
#include <vector>

#include "os/Environment.h"

namespace CLProtocol {

const std::string& ModuleFolder();
os::EnvironmentValue ReadVariable(const char* name);
std::vector<std::string> FoldersOfVariable(const char* name);
std::vector<std::string> FoldersOfList(const std::string& list);
std::vector<std::string> FilesIn(const std::string& folder);
std::string CanonicalPath(const std::string& path);

}  // namespace CLProtocol
