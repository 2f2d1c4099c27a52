/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CNodeMapRef: loads a description and owns its node map
 */

#include "GenApi/NodeMapRef.h"

#include "Base/GCUtilities.h"
#include "core/NodeMap.h"
#include "load/DescriptionFile.h"
#include "load/DescriptionStore.h"
#include "load/Loader.h"
#include "nodes/NodeFactory.h"

namespace GenApi {

namespace {

std::string ExpandedName(const GenICam::gcstring& fileName) {
    GenICam::gcstring expanded = fileName;
    GenICam::ReplaceEnvironmentVariables(expanded);
    return expanded.str();
}

/// A description to load, and one to inject into it.
struct Sources {
    SourceFile target;
    const SourceFile* injected = nullptr;
};

DescriptionKey KeyOf(const Sources& sources) {
    DescriptionKey key{FingerprintOf(sources.target.xml), {}, sources.injected != nullptr};
    if (key.isInjected)
        key.injected = FingerprintOf(sources.injected->xml);
    return key;
}

// Equal cameras have equal descriptions: what a map of this process has read is not read again.
std::shared_ptr<const Description> Read(const Sources& sources, const FileNames& names) {
    DescriptionStore& store = DescriptionStore::Instance();
    const DescriptionKey key = KeyOf(sources);
    if (std::shared_ptr<const Description> known = store.Find(key))
        return known;
    Loader loader;
    try {
        loader.Load(sources.target);
        if (sources.injected != nullptr)
            loader.Inject(*sources.injected);
        return store.Keep(key, loader.Finish());
    } catch (...) {
        CNodeMap::TellWarnings(loader.Warnings(), names);
        throw;
    }
}

std::unique_ptr<CNodeMap> BuildMap(const GenICam::gcstring& deviceName, const Sources& sources) {
    FileNames names{std::string(sources.target.name),
                    std::string(sources.injected != nullptr ? sources.injected->name : "")};
    std::shared_ptr<const Description> description = Read(sources, names);
    return std::make_unique<CNodeMap>(deviceName, std::move(description), std::move(names), MakeNode);
}

std::unique_ptr<CNodeMap> BuildInjectedMap(const GenICam::gcstring& deviceName, const SourceFile& target,
                                           const SourceFile& injected) {
    return BuildMap(deviceName, {target, &injected});
}

}  // namespace

CNodeMapRef::CNodeMapRef(const GenICam::gcstring& deviceName) : m_deviceName(deviceName) {}

CNodeMapRef::~CNodeMapRef() = default;

/**
 * \brief Load a description from a file, which may be a ZIP archive
 * \param[in] fileName UTF-8; $(NAME) stands for an environment variable
 * \throw RuntimeException The file can't be read or holds no description; names file, line and column
 *
 * On failure the node map that was loaded before stays.
 */
void CNodeMapRef::_LoadXMLFromFile(const GenICam::gcstring& fileName) {
    const std::string name = ExpandedName(fileName);
    const std::string xml = ReadDescriptionFile(name);
    m_map = BuildMap(m_deviceName, {{xml, name}});
}

/**
 * \brief Load a description from a text
 * \throw RuntimeException It is no description; names the device, line and column
 */
void CNodeMapRef::_LoadXMLFromString(const GenICam::gcstring& xml) {
    m_map = BuildMap(m_deviceName, {{xml.str(), m_deviceName.str()}});
}

/**
 * \brief Load a description from a file and merge another one into it
 *
 * A node of the second description replaces one of the same name; others are added.
 *
 * \throw RuntimeException One of both files can't be read or holds no description
 */
void CNodeMapRef::_LoadXMLFromFileInject(const GenICam::gcstring& targetFileName,
                                         const GenICam::gcstring& injectFileName) {
    const std::string name = ExpandedName(targetFileName);
    const std::string injectedName = ExpandedName(injectFileName);
    const std::string xml = ReadDescriptionFile(name);
    const std::string injectedXml = ReadDescriptionFile(injectedName);
    m_map = BuildInjectedMap(m_deviceName, {xml, name}, {injectedXml, injectedName});
}

/**
 * \brief Load a description from a text and merge another one into it
 * \throw RuntimeException One of both texts is no description
 */
void CNodeMapRef::_LoadXMLFromStringInject(const GenICam::gcstring& targetXml, const GenICam::gcstring& injectXml) {
    m_map = BuildInjectedMap(m_deviceName, {targetXml.str(), m_deviceName.str()}, {injectXml.str(), "injected"});
}

/**
 * \brief Load the first XML file of a ZIP archive
 * \throw RuntimeException The archive can't be read or holds no description
 */
void CNodeMapRef::_LoadXMLFromZIPFile(const GenICam::gcstring& zipFileName) {
    _LoadXMLFromFile(zipFileName);
}

/**
 * \brief Load the first XML file of a ZIP archive in memory
 * \throw RuntimeException It is no archive or holds no description
 */
void CNodeMapRef::_LoadXMLFromZIPData(const void* zipData, std::size_t zipSize) {
    const std::string xml = UnzipDescription(zipData, zipSize, m_deviceName.str());
    m_map = BuildMap(m_deviceName, {{xml, m_deviceName.str()}});
}

void CNodeMapRef::_Destroy() {
    m_map.reset();
}

INodeMap* CNodeMapRef::_GetNodeMap() const {
    return m_map.get();
}

CNodeMap& CNodeMapRef::Loaded() const {
    if (!m_map)
        throw LOGICAL_ERROR_EXCEPTION("Node map '%s' has not been loaded", m_deviceName);
    return *m_map;
}

bool CNodeMapRef::_Connect(IPort* port, const GenICam::gcstring& portName) const {
    return Loaded().Connect(port, portName);
}
bool CNodeMapRef::_Connect(IPort* port) const {
    return Loaded().Connect(port);
}
INode* CNodeMapRef::_GetNode(const GenICam::gcstring& name) const {
    return Loaded().GetNode(name);
}
void CNodeMapRef::_GetNodes(NodeList_t& nodes) const {
    Loaded().GetNodes(nodes);
}
void CNodeMapRef::_InvalidateNodes() const {
    Loaded().InvalidateNodes();
}
void CNodeMapRef::_Poll(std::int64_t elapsedTime) {
    Loaded().Poll(elapsedTime);
}
CLock& CNodeMapRef::_GetLock() const {
    return Loaded().GetLock();
}
GenICam::gcstring CNodeMapRef::_GetDeviceName() const {
    return m_deviceName;
}
GenICam::gcstring CNodeMapRef::_GetModelName() const {
    return Loaded().GetModelName();
}
GenICam::gcstring CNodeMapRef::_GetVendorName() const {
    return Loaded().GetVendorName();
}
GenICam::gcstring CNodeMapRef::_GetToolTip() const {
    return Loaded().GetToolTip();
}
GenICam::gcstring CNodeMapRef::_GetStandardNameSpace() const {
    return Loaded().GetStandardNameSpace();
}
void CNodeMapRef::_GetGenApiVersion(Version_t& version, std::uint16_t& build) const {
    Loaded().GetGenApiVersion(version, build);
}
void CNodeMapRef::_GetSchemaVersion(Version_t& version) const {
    Loaded().GetSchemaVersion(version);
}
void CNodeMapRef::_GetDeviceVersion(Version_t& version) const {
    Loaded().GetDeviceVersion(version);
}
GenICam::gcstring CNodeMapRef::_GetProductGuid() const {
    return Loaded().GetProductGuid();
}
GenICam::gcstring CNodeMapRef::_GetVersionGuid() const {
    return Loaded().GetVersionGuid();
}
WarningList_t CNodeMapRef::_GetWarnings() const {
    return Loaded().Warnings();
}

void CNodeMapRef::_GetSupportedSchemaVersions(GenICam::gcstring_vector& versions) {
    versions.clear();
    versions.push_back("1.0");
    versions.push_back("1.1");
}

}  // namespace GenApi
