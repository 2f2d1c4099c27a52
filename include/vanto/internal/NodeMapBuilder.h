/* SPDX-License-Identifier: Apache-2.0 */
/*
 * NodeMapBuilder: has a new device build its node maps
 */
#pragma once

#include <exception>

#include "GenApi/GenApi.h"
#include "vanto/ConfigFileRegistry.h"
#include "vanto/TransportLayer.h"
#include "vanto/internal/TransportLayerMessages.h"

namespace Vanto {

/// Has a device that a transport layer makes build its node maps, from the file that its binding names or from the
/// camera's own description. All that it is given must outlive it.
class NodeMapBuilder {
public:
    NodeMapBuilder(ITransportLayer& layer, IVantoDevice& device, IVantoDevicePrivate& self,
                   const gcstring_vector& injected)
        : m_layer(layer),
          m_device(device),
          m_self(self),
          m_injected(injected),
          m_name(device.GetDeviceInfo().GetFullName()) {}

    /// Returns where the description came from.
    gcstring Build(const CDeviceInfo& deviceInfo, const CConfigFileRegistry::CBinding& binding) {
        IXmlFileProvider* provider = binding.useDeviceDescription ? m_layer.GetXmlFileProvider() : nullptr;
        if (provider != nullptr && provider->CanProvideXMLFile(m_device.GetDeviceInfo()))
            return BuildFromCamera(*provider, deviceInfo);
        if (!binding.hasDescriptionFile) {
            static constexpr char kText[] =
                "Device creation failed. Don't know what XML configuration file to use for the device %s";
            tracelog::LogTrace(Messages::Log(), tracelog::kError, kText, m_name);
            throw VANTO_EXCEPTION(RuntimeException, Messages::kSource)(kText, m_name);
        }
        tracelog::LogTrace(Messages::Log(), tracelog::kDebug, "Using XML from path '%s' for device '%s'",
                           binding.descriptionFile, m_name);
        m_self.CreateNodeMapFromFile(binding.descriptionFile, m_injected);
        if (IsChunkFeatureEnabled())
            m_self.CreateChunkNodeMapFromFile(binding.descriptionFile, m_injected);
        return binding.descriptionFile;
    }

private:
    using Messages = TransportLayerMessages;

    gcstring BuildFromCamera(IXmlFileProvider& provider, const CDeviceInfo& deviceInfo) {
        try {
            gcstring source;
            gcstring xml;
            provider.ProvideXMLFile(deviceInfo, source, xml);
            tracelog::LogTrace(Messages::Log(), tracelog::kDebug, "Downloaded XML from device '%s' length %d", m_name,
                               xml.size());
            m_self.CreateNodeMapFromString(xml, m_injected);
            if (IsChunkFeatureEnabled())
                m_self.CreateChunkNodeMapFromString(xml, m_injected);
            return source.empty() ? gcstring("Device") : gcstring("Device") + ":" + source;
        } catch (const std::exception& error) {
            tracelog::LogTrace(Messages::Log(), tracelog::kDebug, "Error downloading XML from device '%s': %s", m_name,
                               error.what());
            throw;
        } catch (...) {
            tracelog::LogTrace(Messages::Log(), tracelog::kDebug, "Error downloading XML from device '%s'", m_name);
            throw;
        }
    }

    bool IsChunkFeatureEnabled() {
        GenApi::INodeMap* nodeMap = m_layer.GetNodeMap();
        auto* enable = dynamic_cast<GenApi::IBoolean*>(
            nodeMap != nullptr ? nodeMap->GetNode("ChunkNodeMapSupportEnable") : nullptr);
        return enable != nullptr && GenApi::IsReadable(enable->GetAccessMode()) && enable->GetValue();
    }

    ITransportLayer& m_layer;
    IVantoDevice& m_device;
    IVantoDevicePrivate& m_self;
    const gcstring_vector& m_injected;
    const gcstring m_name;
};

}  // namespace Vanto
