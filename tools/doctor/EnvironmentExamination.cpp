/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The doctor's look at environment variables and folders
 */
#include <fmt/format.h>

#include <filesystem>
#include <sstream>

#include "CLProtocol/Diagnostics.h"
#include "doctor/Examinations.h"
#include "system/Environment.h"
#include "system/Files.h"
#include "system/Folders.h"
#include "vanto/VantoFolders.h"

namespace tools {

namespace {

enum class Kind { kFolder, kFolders, kDeviceClass, kText };

struct Variable {
    const char* name;
    Kind kind;
    const char* unset;
};

constexpr Variable kVariables[] = {
    {"VANTO_ROOT", Kind::kFolder, "the root is where the base library lies"},
    {"VANTO_CL_BINDINGS", Kind::kFolder, "the port configuration file of the whole machine is used"},
    {"VANTO_USE_TL", Kind::kDeviceClass, "all transport layers may be used"},
    {"VANTO_XML_BINDINGS", Kind::kText, "descriptions are bound by the configuration folder's registry, if any"},
    {"VANTO_LOG", Kind::kText, "the usual log level"},
    {"GENICAM_CLPROTOCOL", Kind::kFolders, "drivers are looked for beside the CLProtocol module"},
    {"GENICAM_CACHE", Kind::kText, "descriptions are kept in the user's cache folder"},
    {"VANTO_CL_STATE", Kind::kText, "the numbers of cameras are kept in the user's state folder"},
    {"CLSERIALPATH", Kind::kFolders, "serial libraries are looked for beside the CLProtocol module"},
    {"CLSERTTY_PATH", Kind::kFolders, "only the system's own serial devices are offered"},
};

#ifdef _WIN32
constexpr char kListSeparator = ';';
#else
constexpr char kListSeparator = ':';
#endif

std::string MissingFolderOf(const std::string& value, Kind kind) {
    std::istringstream folders(value);
    std::error_code error;
    if (kind == Kind::kFolder)
        return std::filesystem::is_directory(PathOf(value), error) ? std::string() : value;
    for (std::string folder; std::getline(folders, folder, kListSeparator);)
        if (!folder.empty() && !std::filesystem::is_directory(PathOf(folder), error))
            return folder;
    return {};
}

Observation Observe(const Variable& variable) {
    const std::optional<std::string> value = GetEnvironment(variable.name);
    if (!value)
        return {Health::kRemark, variable.name, fmt::format("not set: {}", variable.unset), {}};
    if (value->empty())
        return {variable.kind == Kind::kFolder ? Health::kWarning : Health::kRemark, variable.name, "set, but empty",
                variable.kind == Kind::kFolder ? "Unset it, or set it to a folder." : ""};
    Observation observation{Health::kFine, variable.name, *value, {}};
    if (variable.kind == Kind::kDeviceClass && *value != kDeviceClass) {
        observation.health = Health::kBad;
        observation.advice = fmt::format("It keeps Camera Link cameras out. Unset it, or set it to {}.", kDeviceClass);
    } else if (variable.kind == Kind::kFolder || variable.kind == Kind::kFolders) {
        const std::string missing = MissingFolderOf(*value, variable.kind);
        if (!missing.empty()) {
            observation.health = Health::kWarning;
            observation.advice = fmt::format("There is no folder '{}'.", missing);
        }
    }
    return observation;
}

}  // namespace

Section ExamineEnvironment() {
    Section section{"Environment variables", {}};
    for (const Variable& variable : kVariables)
        section.observations.push_back(Observe(variable));
    return section;
}

Section ExamineFolders() {
    struct Named {
        const char* name;
        Vanto::eFolderType type;
        bool required;
    };
    constexpr Named kFolders[] = {{"Root", Vanto::eRootFolder, true},
                                  {"Transport layers", Vanto::eTransportLayerFolder, true},
                                  {"Frame-grabber plug-ins", Vanto::ePluginFolder, false},
                                  {"Configuration", Vanto::eConfigurationFolder, false}};
    Section section{"Folders", {}};
    const std::string cache = CLProtocol::GetCacheFolder().str();
    section.observations.push_back({Health::kRemark,
                                    "Fetched descriptions",
                                    cache.empty() ? "are not kept: this user has no cache folder" : cache,
                                    {}});
    section.observations.push_back({Health::kFine, "This program", OwnProgram().string(), {}});
    for (const Named& folder : kFolders) {
        const std::string path = Vanto::getVantoFolderPath(folder.type).str();
        std::error_code error;
        if (std::filesystem::is_directory(PathOf(path), error))
            section.observations.push_back({Health::kFine, folder.name, path, {}});
        else if (folder.required)
            section.observations.push_back({Health::kBad, folder.name, path + " does not exist",
                                            "Unset VANTO_ROOT, or set it to the root of an installation."});
        else
            section.observations.push_back({Health::kRemark, folder.name, path + " does not exist", {}});
    }
    return section;
}

}  // namespace tools
