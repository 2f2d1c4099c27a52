/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Transport layers as applications and the factory see them
 */
#pragma once

#include <cstdint>

#include "vanto/VantoDevice.h"

namespace Vanto {

class IXmlFileProvider;

/// What transport layers and the factory have in common. Nobody destroys one by this interface: a virtual destructor
/// would move the slots of the operations that follow.
class VANTOBASE_API IDeviceFactory {
public:
    /// Finds the devices that fit one record of \a filter; all where it is empty. Replaces the list, or adds to it;
    /// returns how many were found.
    virtual int EnumerateDevices(DeviceInfoList& list, const DeviceInfoList& filter, bool addToList = false) = 0;
    /// Finds all devices. Replaces the list, or adds to it; returns how many were found.
    virtual int EnumerateDevices(DeviceInfoList& list, bool addToList = false) = 0;
    /// Makes the device of a full name; null when there is none. To be given back with DestroyDevice.
    virtual IVantoDevice* CreateDevice(const gcstring& fullName) = 0;
    /// Makes the one device that has all properties of a record, with XML texts merged into its description; throws
    /// RuntimeException when none has, or several have. To be given back with DestroyDevice.
    virtual IVantoDevice* CreateDevice(const CDeviceInfo& info, const gcstring_vector& injectedXml) = 0;
    /// Makes the one device that has all properties of a record; throws RuntimeException when none has, or several
    /// have. To be given back with DestroyDevice.
    virtual IVantoDevice* CreateDevice(const CDeviceInfo& info) = 0;
    /// As CreateDevice, but takes the first of several.
    virtual IVantoDevice* CreateFirstDevice(const CDeviceInfo& info, const gcstring_vector& injectedXml) = 0;
    /// As CreateDevice, but takes the first of several.
    virtual IVantoDevice* CreateFirstDevice(const CDeviceInfo& info) = 0;
    /// Destroys a device, which is closed if it is open; throws LogicalErrorException for one that was made elsewhere.
    virtual void DestroyDevice(IVantoDevice* device) = 0;
    /// Whether a device could be opened now; \a accessibility says why not. Throws RuntimeException as CreateDevice
    /// does.
    virtual bool IsDeviceAccessible(const CDeviceInfo& info, AccessModeSet mode = AccessModeSet(),
                                    AccessibilityCode* accessibility = nullptr) = 0;

protected:
    ~IDeviceFactory() = default;
};

/// A transport layer: enumerates and makes devices of one device class. Who made it destroys it, by Destroy of its
/// library; CTransportLayerBase goes on with further slots.
class VANTOBASE_API ITransportLayer : public IDeviceFactory {
public:
    /// The transport layer's own record.
    virtual CTlInfo GetTlInfo() const = 0;
    /// An empty record of its device class.
    virtual CDeviceInfo CreateDeviceInfo() = 0;
    /// Parameters of the transport layer; it owns them.
    virtual GenApi::INodeMap* GetNodeMap() = 0;
    /// Null.
    virtual void* ReservedOperation(const CDeviceInfo& info, void* argument) = 0;
    /// What fetches descriptions; null when cameras have none of their own.
    virtual IXmlFileProvider* GetXmlFileProvider() = 0;

protected:
    ~ITransportLayer() = default;
};

/// Something that may change a device's info and the XML to inject before the device is made.
class VANTOBASE_API IDeviceCreationHook {
public:
    /// Called with the record and the XML texts to merge, both of which it may change, before a device is made.
    virtual void OnCreateDevice(CDeviceInfo& info, gcstring_vector& injectedXml) = 0;

protected:
    virtual ~IDeviceCreationHook() = default;
};

/// What the factory uses of a transport layer.
class VANTOBASE_API ITransportLayerPrivate {
public:
    /// Gives one reference back; returns how many are left.
    virtual std::uint32_t Release() = 0;
    /// Returns the hook that was set before.
    virtual IDeviceCreationHook* SetCreationHook(IDeviceCreationHook* hook) = 0;

protected:
    virtual ~ITransportLayerPrivate() = default;
};

/// Reference counting's last step.
class VANTOBASE_API CRefCounted {
protected:
    CRefCounted() = default;
    CRefCounted(const CRefCounted&) = delete;
    CRefCounted& operator=(const CRefCounted&) = delete;
    virtual ~CRefCounted();
    /// Called when the last reference was given back.
    virtual void OnFinalRelease();
};

/// Gives a camera's own description.
class VANTOBASE_API IXmlFileProvider {
public:
    /// Whether the device of a record has a description of its own.
    virtual bool CanProvideXMLFile(const IProperties& info) = 0;
    /// Fetches it; \a source gets where it came from. Throws RuntimeException when that fails.
    virtual void ProvideXMLFile(const IProperties& info, gcstring& source, gcstring& xml) = 0;

protected:
    virtual ~IXmlFileProvider() = default;
};

}  // namespace Vanto
