/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Folders and files that only the system can name
 */
#pragma once

#include <filesystem>
#include <optional>

namespace tools {

/// Path of this program's own file.
std::filesystem::path OwnProgram();
/// The folder for what this program remembers from one run to the next: VANTO_CL_STATE, else the user's own; nothing
/// when the user has none. It need not be there.
std::optional<std::filesystem::path> StateFolder();

/// A new empty folder that only this user can enter; removed with all it holds at the end.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const noexcept { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace tools
