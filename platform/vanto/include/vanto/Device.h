/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Devices and transport layers as applications and the factory see them
 */
#pragma once

#include <cstdint>
#include <memory>

#include "vanto/Info.h"

namespace GenApi {
struct INodeMap;
class CNodeMapRef;
}  // namespace GenApi

namespace Vanto {

class CDeviceRemovalCallback;
class IStreamGrabber;
class IXmlFileProvider;

/// How a device is opened; a set of these.
enum EDeviceAccessMode : std::uint32_t { Control = 1, Stream = 2, Event = 4, Exclusive = 8 };

/// A set of EDeviceAccessMode values.
class AccessModeSet {
public:
    constexpr AccessModeSet() = default;
    constexpr AccessModeSet(EDeviceAccessMode mode) : m_bits(mode) {}
    constexpr bool Contains(EDeviceAccessMode mode) const noexcept { return (m_bits & mode) != 0; }
    constexpr std::uint32_t ToULong() const noexcept { return m_bits; }
    friend constexpr AccessModeSet operator|(AccessModeSet left, AccessModeSet right) noexcept {
        left.m_bits |= right.m_bits;
        return left;
    }
    friend constexpr bool operator==(AccessModeSet left, AccessModeSet right) noexcept {
        return left.m_bits == right.m_bits;
    }
    friend constexpr bool operator!=(AccessModeSet left, AccessModeSet right) noexcept { return !(left == right); }

private:
    std::uint32_t m_bits = Control | Stream | Event;
};
constexpr AccessModeSet operator|(EDeviceAccessMode left, EDeviceAccessMode right) noexcept {
    return AccessModeSet(left) | AccessModeSet(right);
}

/// Whether a device can be opened, as the accessibility checks report it.
enum AccessibilityCode : std::uint32_t {
    Accessibility_Unknown = 0,
    Accessibility_Ok = 1,
    Accessibility_Opened = 2,
    Accessibility_OpenedExclusively = 3,
    Accessibility_NotReachable = 4
};

using DeviceCallbackHandle = std::uint32_t;

/// An opened or closed camera. Operations of one device may be called from any thread; Open and Close of one device
/// are the caller's to serialise.
class VANTOBASE_API IVantoDevice {
public:
    virtual void Open(AccessModeSet mode = AccessModeSet()) = 0;
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    virtual AccessModeSet GetAccessMode() const = 0;
    virtual const CDeviceInfo& GetDeviceInfo() const = 0;
    virtual std::uint32_t GetNumStreamGrabberChannels() = 0;
    virtual IStreamGrabber* GetStreamGrabber(std::uint32_t index) = 0;
    virtual void* GetReserved() = 0;
    virtual GenApi::INodeMap* GetNodeMap() = 0;
    virtual GenApi::INodeMap* GetTLNodeMap() = 0;
    virtual void* CreateChunkParser() = 0;
    virtual void DestroyChunkParser(void* parser) = 0;
    virtual void* CreateEventAdapter() = 0;
    virtual void DestroyEventAdapter(void* adapter) = 0;
    virtual void* CreateSelfReliantChunkParser() = 0;
    virtual void DestroySelfReliantChunkParser(void* parser) = 0;
    virtual DeviceCallbackHandle RegisterRemovalCallback(const CDeviceRemovalCallback& callback) = 0;
    virtual bool DeregisterRemovalCallback(DeviceCallbackHandle handle) = 0;

protected:
    virtual ~IVantoDevice() = default;
};

/// What transport layers and the factory have in common. Nobody destroys one by this interface: a virtual destructor
/// would move the slots of the operations that follow.
class VANTOBASE_API IDeviceFactory {
public:
    virtual int EnumerateDevices(DeviceInfoList& list, const DeviceInfoList& filter, bool addToList = false) = 0;
    virtual int EnumerateDevices(DeviceInfoList& list, bool addToList = false) = 0;
    virtual IVantoDevice* CreateDevice(const gcstring& fullName) = 0;
    virtual IVantoDevice* CreateDevice(const CDeviceInfo& info, const gcstring_vector& injectedXml) = 0;
    virtual IVantoDevice* CreateDevice(const CDeviceInfo& info) = 0;
    virtual IVantoDevice* CreateFirstDevice(const CDeviceInfo& info, const gcstring_vector& injectedXml) = 0;
    virtual IVantoDevice* CreateFirstDevice(const CDeviceInfo& info) = 0;
    virtual void DestroyDevice(IVantoDevice* device) = 0;
    virtual bool IsDeviceAccessible(const CDeviceInfo& info, AccessModeSet mode = AccessModeSet(),
                                    AccessibilityCode* accessibility = nullptr) = 0;

protected:
    ~IDeviceFactory() = default;
};

/// A transport layer: enumerates and makes devices of one device class. Who made it destroys it, by Destroy of its
/// library; CTransportLayerBase goes on with further slots.
class VANTOBASE_API ITransportLayer : public IDeviceFactory {
public:
    virtual CTlInfo GetTlInfo() const = 0;
    virtual CDeviceInfo CreateDeviceInfo() = 0;
    virtual GenApi::INodeMap* GetNodeMap() = 0;
    virtual void* ReservedOperation(const CDeviceInfo& info, void* argument) = 0;
    virtual IXmlFileProvider* GetXmlFileProvider() = 0;

protected:
    ~ITransportLayer() = default;
};

/// Something that may change a device's info and the XML to inject before the device is made.
class VANTOBASE_API IDeviceCreationHook {
public:
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
    virtual bool CanProvideXMLFile(const IProperties& info) = 0;
    virtual void ProvideXMLFile(const IProperties& info, gcstring& source, gcstring& xml) = 0;

protected:
    virtual ~IXmlFileProvider() = default;
};

/// What a transport layer uses of the devices that it makes.
class VANTOBASE_API IVantoDevicePrivate {
public:
    virtual void CreateNodeMapFromFile(const gcstring& path, const gcstring_vector& injected) = 0;
    virtual void CreateNodeMapFromString(const gcstring& xml, const gcstring_vector& injected) = 0;
    virtual void CreateChunkNodeMapFromFile(const gcstring& path, const gcstring_vector& injected) = 0;
    virtual void CreateChunkNodeMapFromString(const gcstring& xml, const gcstring_vector& injected) = 0;
    virtual bool SupportsChunkParsing() const = 0;
    virtual bool IsChunkParsingAvailable() const = 0;
    virtual void DestroySelf() = 0;
    virtual std::shared_ptr<GenApi::CNodeMapRef> CreateChunkNodeMapCopy() = 0;

protected:
    virtual ~IVantoDevicePrivate() = default;
};

}  // namespace Vanto
