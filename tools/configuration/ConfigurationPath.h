/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where the port configuration file is looked for, and why there
 */
#pragma once

#include <filesystem>
#include <string>

namespace tools {

/// The file's place and the rule that led there.
struct ConfigurationPath {
    std::filesystem::path path;
    std::string reason;   ///< a sentence for the user
    std::string warning;  ///< what is wrong with the rule's outcome; empty when nothing is
};

ConfigurationPath FindConfigurationPath();

}  // namespace tools
