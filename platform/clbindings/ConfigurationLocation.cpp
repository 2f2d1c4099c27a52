/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where the port configuration file lies
 */

#include "clbindings/ConfigurationLocation.h"

#include "os/Environment.h"

namespace Vanto {

namespace {

LocationRule RuleOf(os::EnvironmentStatus variable) {
    switch (variable) {
        case os::EnvironmentStatus::kPresent:
            return LocationRule::kVariable;
        case os::EnvironmentStatus::kEmpty:
            return LocationRule::kEmptyVariable;
        case os::EnvironmentStatus::kTooLong:
            return LocationRule::kTooLongVariable;
        default:
            return LocationRule::kCommonFolder;
    }
}

}  // namespace

/**
 * \brief Find the place of the port configuration file, which need not exist
 *
 * The folder is the value of VANTO_CL_BINDINGS, or, where that variable does not exist, Marlow/CLBindings below the
 * common application data folder. A variable that is set but empty or too long leaves the bare file name, relative
 * to the working folder.
 *
 * \return Nothing when the system has no common folder and that is where the file would lie
 * \context Any thread
 */
std::optional<ConfigurationLocation> FindConfigurationLocation(CommonFolder* commonFolder) {
    const os::EnvironmentValue folder = os::GetEnvironment(kBindingsVariable, os::kMaxPath);
    ConfigurationLocation location{RuleOf(folder.status), folder.text, folder.text};
    if (location.rule == LocationRule::kCommonFolder) {
        const std::optional<std::string> common = commonFolder();
        if (!common)
            return {};
        location.path = *common;
        os::AppendToPath(location.path, os::ToSystemSeparators("Marlow\\CLBindings"));
    }
    // A folder that leaves no room for the name still has a length to report.
    if (!os::AppendToPath(location.path, kConfigurationFileName)) {
        if (!os::IsPathSeparator(location.path.back()))
            location.path += os::kPathSeparator;
        location.path += kConfigurationFileName;
    }
    return location;
}

}  // namespace Vanto
