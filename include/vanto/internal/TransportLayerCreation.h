/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How transport layers make devices: their record, description and node maps
 */
#pragma once

#include "vanto/ConfigFileRegistry.h"
#include "vanto/TlFactory.h"
#include "vanto/VantoFolders.h"
#include "vanto/internal/NodeMapBuilder.h"
#include "vanto/internal/TransportLayerBase.h"

namespace Vanto {

template <class Interface>
IVantoDevice* CTransportLayerBase<Interface>::CreateDevice(const gcstring& fullName) {
    if (!IsTlAllowed())
        return nullptr;
    DeviceInfoList all;
    if (InternalEnumerateDevices(all) == 0)
        return nullptr;
    for (const CDeviceInfo& record : all) {
        if (record.GetFullName() == fullName)
            return CreateDevice(record);
    }
    return nullptr;
}

template <class Interface>
IVantoDevice* CTransportLayerBase<Interface>::CreateResolved(const CDeviceInfo& info,
                                                             const gcstring_vector& injectedXml, bool allowAmbiguous) {
    if (!info.IsUserProvided())
        return CreateDeviceFromInfo(info, injectedXml);
    CDeviceInfo resolved;
    FindDevice(info, resolved, allowAmbiguous);
    return CreateDeviceFromInfo(resolved, injectedXml);
}

template <class Interface>
void CTransportLayerBase<Interface>::RunCreationHook(CDeviceInfo& deviceInfo, gcstring_vector& injected) {
    IDeviceCreationHook* hook = m_creationHook;
    if (hook == nullptr)
        return;
    hook->OnCreateDevice(deviceInfo, injected);
    if (deviceInfo.GetInfoImpl().IsModified())
        throw VANTO_EXCEPTION(RuntimeException,
                              Messages::kSource)("Device creation failed. Bad device information supplied.");
}

template <class Interface>
IVantoDevice* CTransportLayerBase<Interface>::CreateDeviceFromInfo(const CDeviceInfo& info,
                                                                   const gcstring_vector& injectedXml) {
    if (!IsTlAllowed())
        throw VANTO_EXCEPTION(RuntimeException, Messages::kSource)(
            "Device creation failed. Transport layer is restricted by the environment");
    CDeviceInfo deviceInfo(info);
    gcstring_vector injected(injectedXml);
    const auto binding = CConfigFileRegistry::GetInstance().GetXmlFileBinding(deviceInfo);
    if (binding.hasMergeFile) {
        const gcstring text = textFileToString(binding.mergeFile);
        tracelog::LogTrace(Messages::Log(), tracelog::kDebug, "About to merge file '%s' into xml.", binding.mergeFile);
        injected.push_back(text);
    }
    RunCreationHook(deviceInfo, injected);
    IVantoDevice* device = InternalCreateDevice(deviceInfo);
    if (device == nullptr)
        throw VANTO_EXCEPTION(RuntimeException,
                              Messages::kSource)("Internal error. Device creation failed. Created device is NULL.");
    auto* self = dynamic_cast<IVantoDevicePrivate*>(device);
    if (self == nullptr) {
        tracelog::LogTrace(Messages::Log(), tracelog::kError,
                           "Device creation failed. Device doesn't implement IVantoDevicePrivate interface");
        throw VANTO_EXCEPTION(RuntimeException, Messages::kSource)(
            "Internal error. Device creation failed. Device doesn't implement IVantoDevicePrivate interface");
    }
    try {
        const gcstring source = NodeMapBuilder(*this, *device, *self, injected).Build(deviceInfo, binding);
        // The device's own record, which only its maker may label.
        const_cast<CDeviceInfo&>(device->GetDeviceInfo()).SetPropertyValue("XMLSource", source);
        m_registry->Add(device);
        ++m_references;
    } catch (...) {
        self->DestroySelf();
        throw;
    }
    return device;
}

template <class Interface>
void CTransportLayerBase<Interface>::DestroyDevice(IVantoDevice* device) {
    if (!m_registry->Remove(device))
        throw VANTO_EXCEPTION(LogicalErrorException,
                              Messages::kSource)("Trying to destroy device which hasn't been created by me");
    DeviceRegistry::DestroySelf(device);
    // May delete this object: nothing follows.
    CTlFactory::GetInstance().ReleaseTl(this);
}

}  // namespace Vanto
