/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CConfigFileRegistry: which description and merge files are bound to which cameras
 */

#include "vanto/ConfigFileRegistry.h"

#include "Base/GCException.h"
#include "bindings/DescriptionBindings.h"
#include "os/Environment.h"
#include "os/File.h"
#include "os/Path.h"
#include "vanto/TraceLog.h"
#include "vanto/VantoFolders.h"

namespace Vanto {

namespace {

constexpr const char* kDefaultFileName = "DescriptionBindings.xml";
constexpr const char* kPathVariable = "VANTO_XML_BINDINGS";

struct RegistryFile {
    std::string path;
    bool isRequired;  // somebody asked for this very file
};

RegistryFile FindRegistryFile() {
    const os::EnvironmentValue wanted = os::GetEnvironment(kPathVariable);
    const bool isSet = wanted.status == os::EnvironmentStatus::kPresent;
    if (wanted.status == os::EnvironmentStatus::kTooLong)
        throw RUNTIME_EXCEPTION("The environment variable %s is too long for a path.", kPathVariable);
    if (isSet && !os::GetFileStatus(wanted.text).isFolder)
        return {wanted.text, true};
    std::string path = isSet ? wanted.text : getVantoFolderPath(eConfigurationFolder).str();
    if (path.back() != os::kPathSeparator)
        path += os::kPathSeparator;
    return {path + kDefaultFileName, isSet};
}

tracelog::CategoryId LogCategory() {
    static const tracelog::CategoryId category = tracelog::LogGetCatID("vanto.base.Registry");
    return category;
}

CConfigFileRegistry::CBinding BindingOfOverride(const gcstring& path) {
    CConfigFileRegistry::CBinding binding;
    binding.useDeviceDescription = false;
    binding.hasDescriptionFile = true;
    binding.descriptionFile = path;
    return binding;
}

}  // namespace

CConfigFileRegistry& CConfigFileRegistry::GetInstance() {
    static CConfigFileRegistry instance;
    return instance;
}

/**
 * \brief Where the registry file is looked for
 *
 * VANTO_XML_BINDINGS names the file, or the folder that holds it; without it, it is DescriptionBindings.xml in the
 * root's configuration folder.
 */
gcstring CConfigFileRegistry::GetRegistryFilePath() const {
    return FindRegistryFile().path;
}

/**
 * \brief Where a camera's description comes from
 * \param[in] info The camera's record
 *
 * The record's property DeviceXMLFileOverride comes first; it binds its file and nothing else, and the registry file
 * is not read. Else the most particular entry of the registry file counts that fits the record, else the camera's own
 * description is used. The registry file is read at each call.
 *
 * \throw RuntimeException The registry file is malformed (with line and column), can't be read, is missing although
 * VANTO_XML_BINDINGS names it, or has two entries that fit equally well
 * \context Thread-safe
 */
CConfigFileRegistry::CBinding CConfigFileRegistry::GetXmlFileBinding(const IProperties& info) const {
    gcstring path;
    if (info.GetPropertyValue("DeviceXMLFileOverride", path) && !path.empty())
        return BindingOfOverride(path);
    const RegistryFile file = FindRegistryFile();
    if (!file.isRequired && os::GetFileStatus(file.path).state == os::FileState::kMissing)
        return CBinding();
    const DescriptionBindings bindings(file.path);
    const DescriptionBindings::Entry* const entry = bindings.Find(info);
    if (entry == nullptr)
        return CBinding();
    LogTrace(LogCategory(), tracelog::kDebug, "'%s' binds files by its entry in line %u.", file.path, entry->line);
    return entry->binding;
}

}  // namespace Vanto
