/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where the port configuration file is looked for, and why there
 */
#include "configuration/ConfigurationPath.h"

#include <fmt/format.h>

#include "error/ExitCode.h"
#include "output/Text.h"
#include "system/Environment.h"
#include "system/Files.h"
#include "system/Folders.h"

namespace tools {

namespace {

constexpr const char* kVariable = "VANTO_CL_BINDINGS";
constexpr const char* kFileName = "PortConfiguration_x64.xml";
constexpr std::size_t kLongestPath = 260;  // the plug-in's path buffer, its terminating NUL included

ConfigurationPath InFolderOfVariable(const std::string& folder) {
    ConfigurationPath found;
    if (folder.empty() || folder.size() >= kLongestPath) {
        found.path = kFileName;
        found.reason = fmt::format("{} is set, but {}, so the file is looked for in the working folder.", kVariable,
                                   folder.empty() ? "empty" : "longer than 259 characters");
        found.warning = fmt::format("{} must hold a folder, or not be set at all.", kVariable);
        return found;
    }
    found.path = PathOf(folder) / kFileName;
    found.reason = fmt::format("{} is set to the folder '{}'.", kVariable, Printable(folder));
    std::error_code error;
    if (std::filesystem::is_regular_file(PathOf(folder), error))
        found.warning = fmt::format("{} names a file; it must name the folder that holds {}.", kVariable, kFileName);
    else if (found.path.native().size() >= kLongestPath)
        found.warning = "The path is longer than 259 characters: no transport layer can read the file.";
    return found;
}

}  // namespace

/**
 * \brief Find the configuration file's place by the rules of the transport layer
 *
 * The folder that VANTO_CL_BINDINGS names if it is set, else the folder Marlow/CLBindings in the folder for data of all
 * users' applications. Whether the file exists does not matter.
 *
 * \throw ToolError The system has no such folder
 */
ConfigurationPath FindConfigurationPath() {
    if (const auto folder = GetEnvironment(kVariable))
        return InFolderOfVariable(*folder);
    const auto common = CommonApplicationDataFolder();
    if (!common)
        throw ToolError("the system has no folder for data of all users' applications",
                        fmt::format("Set {} to a folder of yours.", kVariable));
    return {*common / "Marlow" / "CLBindings" / kFileName,
            fmt::format("{} is not set, so the file of the whole machine is used.", kVariable),
            {}};
}

}  // namespace tools
