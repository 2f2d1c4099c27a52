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
    /// Holds nothing yet; the name appears in messages.
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
    /// Lets the node map go; its nodes and pointers to them end.
    void _Destroy();

    /// Connects a port node; false when there is none of this name. The port must outlive the node map.
    bool _Connect(IPort* port, const GenICam::gcstring& portName) const;
    /// Connects the port node "Device"; false when there is none.
    bool _Connect(IPort* port) const;
    /// The node of a name; null when there is none.
    INode* _GetNode(const GenICam::gcstring& name) const;
    /// Appends all nodes.
    void _GetNodes(NodeList_t& nodes) const;
    /// Drops all cached values and runs the callbacks of all nodes.
    void _InvalidateNodes() const;
    /// Tells that so many milliseconds went by; nodes whose polling time is over are invalidated.
    void _Poll(std::int64_t elapsedTime);
    /// The node map's lock.
    CLock& _GetLock() const;
    /// The name from the constructor.
    GenICam::gcstring _GetDeviceName() const;

    /// The device's model.
    GenICam::gcstring _GetModelName() const;
    /// The device's maker.
    GenICam::gcstring _GetVendorName() const;
    /// One sentence about the device; may be empty.
    GenICam::gcstring _GetToolTip() const;
    /// "None", "IIDC", "GEV", "CL" or "USB".
    GenICam::gcstring _GetStandardNameSpace() const;
    /// The version of this library.
    void _GetGenApiVersion(Version_t& version, std::uint16_t& build) const;
    /// The version of the schema that the description follows.
    void _GetSchemaVersion(Version_t& version) const;
    /// The version of the description.
    void _GetDeviceVersion(Version_t& version) const;
    /// Names the product that the description is for.
    GenICam::gcstring _GetProductGuid() const;
    /// Names this very description.
    GenICam::gcstring _GetVersionGuid() const;
    /// Versions of the schema that this library reads.
    static void _GetSupportedSchemaVersions(GenICam::gcstring_vector& versions);

    /// The faults that were found while loading and up to now.
    WarningList_t _GetWarnings() const;

    /// The node map, null before a description is loaded.
    INodeMap* _GetNodeMap() const;
    /// The node map, null before a description is loaded.
    operator INodeMap*() const { return _GetNodeMap(); }

private:
    CNodeMap& Loaded() const;

    GenICam::gcstring m_deviceName;
    std::unique_ptr<CNodeMap> m_map;
};

}  // namespace GenApi
