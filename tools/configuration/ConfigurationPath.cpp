/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where the port configuration file is looked for, and why there
 */
#include "configuration/ConfigurationPath.h"

#include <fmt/format.h>

#include "clbindings/ConfigurationLocation.h"
#include "error/ExitCode.h"
#include "output/Text.h"
#include "system/Files.h"

namespace tools {

namespace {

using Vanto::ConfigurationLocation;
using Vanto::kBindingsVariable;
using Vanto::kConfigurationFileName;
using Vanto::LocationRule;

ConfigurationPath InWorkingFolder(const char* reason) {
    return {
        kConfigurationFileName,
        fmt::format("{} is set, but {}, so the file is looked for in the working folder.", kBindingsVariable, reason),
        fmt::format("{} must hold a folder, or not be set at all.", kBindingsVariable)};
}

ConfigurationPath InFolderOfVariable(const ConfigurationLocation& location) {
    ConfigurationPath found{PathOf(location.path),
                            fmt::format("{} is set to the folder '{}'.", kBindingsVariable, Printable(location.folder)),
                            {}};
    std::error_code error;
    if (std::filesystem::is_regular_file(PathOf(location.folder), error))
        found.warning = fmt::format("{} names a file; it must name the folder that holds {}.", kBindingsVariable,
                                    kConfigurationFileName);
    else if (location.path.size() >= os::kMaxPath)
        found.warning = "The path is longer than 259 characters: no transport layer can read the file.";
    return found;
}

}  // namespace

/**
 * \brief Find the configuration file's place by the rules of the transport layer
 *
 * Whether the file exists does not matter.
 *
 * \throw ToolError The system has no such folder
 */
ConfigurationPath FindConfigurationPath() {
    const std::optional<ConfigurationLocation> location = Vanto::FindConfigurationLocation();
    if (!location)
        throw ToolError("the system has no folder for data of all users' applications",
                        fmt::format("Set {} to a folder of yours.", kBindingsVariable));
    switch (location->rule) {
        case LocationRule::kVariable:
            return InFolderOfVariable(*location);
        case LocationRule::kEmptyVariable:
            return InWorkingFolder("empty");
        case LocationRule::kTooLongVariable:
            return InWorkingFolder("longer than 259 characters");
        default:
            return {PathOf(location->path),
                    fmt::format("{} is not set, so the file of the whole machine is used.", kBindingsVariable),
                    {}};
    }
}

}  // namespace tools
