/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Folders and files that only the system can name
 */
#include "system/Folders.h"

#include <stdlib.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "system/Environment.h"

namespace tools {

std::filesystem::path OwnProgram() {
    return std::filesystem::read_symlink("/proc/self/exe");
}

std::optional<std::filesystem::path> StateFolder() {
    const auto folder = [](const char* variable) {
        return std::filesystem::path(GetEnvironment(variable).value_or(std::string()));
    };
    if (const std::filesystem::path own = folder("VANTO_CL_STATE"); !own.empty())
        return own;
    // As the XDG Base Directory rules say it, a relative path there counts as none.
    if (const std::filesystem::path state = folder("XDG_STATE_HOME"); state.is_absolute())
        return state / "vanto";
    if (const std::filesystem::path home = folder("HOME"); home.is_absolute())
        return home / ".local" / "state" / "vanto";
    return std::nullopt;
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
