/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Lists of folders in which the module looks for libraries
 */

#include "SearchPath.h"

#include <algorithm>
#include <filesystem>

#include "ModuleLog.h"
#include "Texts.h"
#include "base/Text.h"
#include "os/File.h"
#include "os/Library.h"
#include "os/Path.h"

namespace CLProtocol {

namespace {

// While the module is loaded, and so before any foreign library is: one that hangs in its constructor keeps the system
// from answering this question.
[[maybe_unused]] const bool isFolderKnown = !ModuleFolder().empty();

}  // namespace

/// The folder that the module's own library lies in.
const std::string& ModuleFolder() {
    static const std::string folder = os::FolderOfLibraries(reinterpret_cast<const void*>(&FoldersOfList));
    return folder;
}

/// An environment variable; of one that is too long the log tells.
os::EnvironmentValue ReadVariable(const char* name) {
    os::EnvironmentValue value = os::GetEnvironment(name);
    if (value.status == os::EnvironmentStatus::kTooLong)
        Log(CLP_LOG_WARN, "Environment variable '%s' is too long and ignored", name);
    return value;
}

/// The folders that an environment variable lists; none when it is absent, empty or too long.
std::vector<std::string> FoldersOfVariable(const char* name) {
    return FoldersOfList(ReadVariable(name).text);
}

/// The folders of a list, in order, each once, without separators at their ends; environment variables stay.
std::vector<std::string> FoldersOfList(const std::string& list) {
    std::vector<std::string> folders;
    for (std::string& folder : base::SplitWithoutEmpty(list, os::kPathListSeparator)) {
        while (folder.size() > 1 && os::IsPathSeparator(folder.back()))
            folder.pop_back();
        if (std::find(folders.begin(), folders.end(), folder) == folders.end())
            folders.push_back(std::move(folder));
    }
    return folders;
}

/// The files of a folder, sorted. One that is there and can't be read is logged: what lies in it will be missed.
std::vector<std::string> FilesIn(const std::string& folder) {
    std::error_code error;
    std::vector<std::string> names = os::ListFiles(folder, error);
    if (error && !os::IsNotThere(error))
        Log(CLP_LOG_WARN, "Folder '%s' can't be read: %s", folder, error.message());
    return names;
}

/// One and the same text for all paths of a file.
std::string CanonicalPath(const std::string& path) {
    std::error_code error;
    const std::filesystem::path canonical = std::filesystem::canonical(os::ToFilePath(path), error);
    return error ? path : os::ToText(canonical);
}

}  // namespace CLProtocol
