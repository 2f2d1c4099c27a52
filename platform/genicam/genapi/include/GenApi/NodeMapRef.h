/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CNodeMapRef: loads a description and owns its node map
 */
#pragma once

#include <memory>

#include "GenApi/Diagnostics.h"
#include "GenApi/IDeviceInfo.h"
#include "GenApi/INodeMap.h"
#include "GenApi/NodeCallback.h"
#include "GenApi/Pointer.h"

namespace GenApi {

class CNodeMap;

/// Owns the node map of one description. Loading is not thread-safe; the loaded node map is.
class GENAPI_API CNodeMapRef {
public:
    explicit CNodeMapRef(const GenICam::gcstring& deviceName = "Device");
    virtual ~CNodeMapRef();
    CNodeMapRef(const CNodeMapRef&) = delete;
    CNodeMapRef& operator=(const CNodeMapRef&) = delete;

    void _LoadXMLFromFile(const GenICam::gcstring& fileName);
    void _LoadXMLFromString(const GenICam::gcstring& xml);
    void _LoadXMLFromFileInject(const GenICam::gcstring& targetFileName, const GenICam::gcstring& injectFileName);
    void _LoadXMLFromStringInject(const GenICam::gcstring& targetXml, const GenICam::gcstring& injectXml);
    void _LoadXMLFromZIPFile(const GenICam::gcstring& zipFileName);
    void _LoadXMLFromZIPData(const void* zipData, std::size_t zipSize);
    void _Destroy();

    bool _Connect(IPort* port, const GenICam::gcstring& portName) const;
    bool _Connect(IPort* port) const;
    INode* _GetNode(const GenICam::gcstring& name) const;
    void _GetNodes(NodeList_t& nodes) const;
    void _InvalidateNodes() const;
    void _Poll(std::int64_t elapsedTime);
    CLock& _GetLock() const;
    GenICam::gcstring _GetDeviceName() const;

    GenICam::gcstring _GetModelName() const;
    GenICam::gcstring _GetVendorName() const;
    GenICam::gcstring _GetToolTip() const;
    GenICam::gcstring _GetStandardNameSpace() const;
    void _GetGenApiVersion(Version_t& version, std::uint16_t& build) const;
    void _GetSchemaVersion(Version_t& version) const;
    void _GetDeviceVersion(Version_t& version) const;
    GenICam::gcstring _GetProductGuid() const;
    GenICam::gcstring _GetVersionGuid() const;
    static void _GetSupportedSchemaVersions(GenICam::gcstring_vector& versions);

    /// The faults that were found while loading and up to now.
    WarningList_t _GetWarnings() const;

    /// The node map, null before a description is loaded.
    INodeMap* _GetNodeMap() const;
    operator INodeMap*() const { return _GetNodeMap(); }

private:
    CNodeMap& Loaded() const;

    GenICam::gcstring m_deviceName;
    std::unique_ptr<CNodeMap> m_map;
};

}  // namespace GenApi
