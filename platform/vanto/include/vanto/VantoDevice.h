/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Devices as applications and transport layers see them
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
