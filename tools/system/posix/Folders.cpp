/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Folders and files that only the system can name
 */
#include "system/Folders.h"

#include <stdlib.h>

#include <cerrno>
#include <system_error>

namespace tools {

std::filesystem::path OwnProgram() {
    return std::filesystem::read_symlink("/proc/self/exe");
}

std::optional<std::filesystem::path> CommonApplicationDataFolder() {
    return "/etc";
}

/**
 * \brief Make the folder below the system's folder for temporary files
 * \throw std::system_error The system refuses
 */
TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "vanto-cl-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "can't make a temporary folder " + name);
    m_path = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

}  // namespace tools
