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
    /// A set of one.
    constexpr AccessModeSet(EDeviceAccessMode mode) : m_bits(mode) {}
    /// Whether a value is in it.
    constexpr bool Contains(EDeviceAccessMode mode) const noexcept { return (m_bits & mode) != 0; }
    /// The set as bits.
    constexpr std::uint32_t ToULong() const noexcept { return m_bits; }
    /// What is in one or the other.
    friend constexpr AccessModeSet operator|(AccessModeSet left, AccessModeSet right) noexcept {
        left.m_bits |= right.m_bits;
        return left;
    }
    /// Whether both hold the same.
    friend constexpr bool operator==(AccessModeSet left, AccessModeSet right) noexcept {
        return left.m_bits == right.m_bits;
    }
    /// Whether they differ.
    friend constexpr bool operator!=(AccessModeSet left, AccessModeSet right) noexcept { return !(left == right); }

private:
    std::uint32_t m_bits = Control | Stream | Event;
};
/// A set of two.
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
    /// Connects to the camera and sets its baud rate; throws RuntimeException or LogicalErrorException with the reason
    /// when that fails. Takes some tenths of a second on a serial line.
    virtual void Open(AccessModeSet mode = AccessModeSet()) = 0;
    /// Gives the camera its baud rate back and lets the port go; for a closed device nothing.
    virtual void Close() = 0;
    /// Whether it is open; a camera that was unplugged is open until it is closed.
    virtual bool IsOpen() const = 0;
    /// How it was opened.
    virtual AccessModeSet GetAccessMode() const = 0;
    /// The record it was made from. Stands as long as the device.
    virtual const CDeviceInfo& GetDeviceInfo() const = 0;
    /// How many stream grabbers there are: 0 or 1. The first call loads the frame grabber's plug-in.
    virtual std::uint32_t GetNumStreamGrabberChannels() = 0;
    /// The stream grabber of an index; null when there is none. The device owns it.
    virtual IStreamGrabber* GetStreamGrabber(std::uint32_t index) = 0;
    /// Null.
    virtual void* GetReserved() = 0;
    /// The camera's features; null when it has none. The device owns them.
    virtual GenApi::INodeMap* GetNodeMap() = 0;
    /// Parameters of the connection, AutoCloseTimeout in milliseconds among them. The device owns them.
    virtual GenApi::INodeMap* GetTLNodeMap() = 0;
    /// Null where a device does not offer it.
    virtual void* CreateChunkParser() = 0;
    /// Does nothing for null.
    virtual void DestroyChunkParser(void* parser) = 0;
    /// Null where a device does not offer it.
    virtual void* CreateEventAdapter() = 0;
    /// Does nothing for null.
    virtual void DestroyEventAdapter(void* adapter) = 0;
    /// Null where a device does not offer it.
    virtual void* CreateSelfReliantChunkParser() = 0;
    /// Does nothing for null.
    virtual void DestroySelfReliantChunkParser(void* parser) = 0;
    /// Keeps a copy of a callback and calls it once when the camera is gone, on the thread that finds out; returns its
    /// handle. Throws LogicalErrorException unless the device is open.
    virtual DeviceCallbackHandle RegisterRemovalCallback(const CDeviceRemovalCallback& callback) = 0;
    /// Removes a callback; false when the handle is not known. Throws LogicalErrorException unless the device is open.
    virtual bool DeregisterRemovalCallback(DeviceCallbackHandle handle) = 0;

protected:
    virtual ~IVantoDevice() = default;
};

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

/// What a transport layer uses of the devices that it makes.
class VANTOBASE_API IVantoDevicePrivate {
public:
    /// Loads the camera's features from a description file, with XML texts merged in.
    virtual void CreateNodeMapFromFile(const gcstring& path, const gcstring_vector& injected) = 0;
    /// Loads the camera's features from a description, with XML texts merged in.
    virtual void CreateNodeMapFromString(const gcstring& xml, const gcstring_vector& injected) = 0;
    /// Loads the features of data that come with images.
    virtual void CreateChunkNodeMapFromFile(const gcstring& path, const gcstring_vector& injected) = 0;
    /// Loads the features of data that come with images.
    virtual void CreateChunkNodeMapFromString(const gcstring& xml, const gcstring_vector& injected) = 0;
    /// Whether there may be data that come with images.
    virtual bool SupportsChunkParsing() const = 0;
    /// Whether their features were loaded.
    virtual bool IsChunkParsingAvailable() const = 0;
    /// Deletes the device.
    virtual void DestroySelf() = 0;
    /// Another node map of the same features.
    virtual std::shared_ptr<GenApi::CNodeMapRef> CreateChunkNodeMapCopy() = 0;

protected:
    virtual ~IVantoDevicePrivate() = default;
};

}  // namespace Vanto
