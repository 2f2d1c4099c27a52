/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A configuration file for one test
 */
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "system/Folders.h"

namespace tools_test {

/// A file in a folder of its own.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string_view content) {
        std::ofstream(Path(), std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
    }
    std::filesystem::path Path() const { return m_folder.Path() / "PortConfiguration_x64.xml"; }
    std::filesystem::path Folder() const { return m_folder.Path(); }

private:
    tools::TemporaryFolder m_folder;
};

}  // namespace tools_test
