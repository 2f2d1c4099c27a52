/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The node map of parameters that every transport layer has
 */

#include "vanto/TransportLayerParams.h"

#include <map>
#include <memory>
#include <mutex>

#include "GenApi/NodeMapRef.h"
#include "os/LockName.h"

namespace Vanto {

namespace {

constexpr const char* kDescription = R"(<?xml version="1.0" encoding="UTF-8"?>
<RegisterDescription xmlns="http://www.genicam.org/GenApi/Version_1_0"
    xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
    ModelName="TransportLayer" VendorName="Vanto" ToolTip="Parameters of a transport layer" StandardNameSpace="None"
    SchemaMajorVersion="1" SchemaMinorVersion="0" SchemaSubMinorVersion="0"
    MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
    ProductGuid="5C0E0B43-6B1E-4B7B-9C2F-8E7B6C4A9D10" VersionGuid="A2D1F3C8-3F57-4C55-8F0B-1B5E6D7C8A21">
  <Category Name="Root">
    <pFeature>ChunkNodeMapSupportEnable</pFeature>
  </Category>
  <Boolean Name="ChunkNodeMapSupportEnable">
    <ToolTip>Build node maps for chunks</ToolTip>
    <Description>Whether a device that sends chunks gets what their node maps are made of when it is created.</Description>
    <DisplayName>Chunk Node Map Support Enable</DisplayName>
    <Visibility>Expert</Visibility>
    <Value>1</Value>
  </Boolean>
</RegisterDescription>
)";

// Who owns the node maps that are known outside by their interface only.
class Owners {
public:
    // Never destroyed: transport layers may outlive the static objects of this library.
    static Owners& Instance() {
        static Owners* const instance = std::make_unique<Owners>().release();
        return *instance;
    }
    GenApi::INodeMap* Keep(std::unique_ptr<GenApi::CNodeMapRef> nodeMap) {
        const std::lock_guard lock(m_mutex);
        GenApi::INodeMap* const key = nodeMap->_GetNodeMap();
        m_nodeMaps.insert_or_assign(key, std::move(nodeMap));
        return key;
    }
    void Drop(GenApi::INodeMap* nodeMap) noexcept {
        std::unique_lock lock(m_mutex);
        const auto dropped = m_nodeMaps.extract(nodeMap);
        lock.unlock();  // destroying a node map runs code of others
    }

private:
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "layer's parameters"};
    std::map<GenApi::INodeMap*, std::unique_ptr<GenApi::CNodeMapRef>> m_nodeMaps;
};

}  // namespace

/**
 * \brief Make the node map of parameters that every transport layer has
 *
 * Its Boolean node "ChunkNodeMapSupportEnable", true at first, says whether devices get chunk node maps.
 *
 * \return The node map, to be destroyed with DestroyDefaultTransportLayerParams
 * \context Thread-safe
 */
GenApi::INodeMap* CreateDefaultTransportLayerParams() {
    auto nodeMap = std::make_unique<GenApi::CNodeMapRef>("TransportLayer");
    nodeMap->_LoadXMLFromString(kDescription);
    return Owners::Instance().Keep(std::move(nodeMap));
}

/**
 * \brief Destroy such a node map; null and foreign ones are ignored
 * \context Thread-safe
 */
void DestroyDefaultTransportLayerParams(GenApi::INodeMap* nodeMap) noexcept {
    Owners::Instance().Drop(nodeMap);
}

}  // namespace Vanto
