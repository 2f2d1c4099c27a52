/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera on a Camera Link serial port: opening, closing, removal, node maps
 */

#include "VantoCLSer/VantoCLSerDevice.h"

#include <chrono>
#include <exception>
#include <limits>
#include <string_view>
#include <utility>

#include "VantoCLSer/base/Log.h"
#include "VantoCLSer/stream/VantoCLSerStreamGrabber.h"
#include "base/BaudRates.h"
#include "os/System.h"
#include "vanto/internal/VantoException.h"

extern const char kTransportLayerDescription[];

namespace Vanto {

using GenICam::GenericException;

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerDevice";
constexpr char kBaudRateNode[] = "ClSerialPortBaudRate";
constexpr char kAutoCloseNode[] = "AutoCloseTimeout";
constexpr std::int64_t kLargestBaudRateEntry = 255;
constexpr std::chrono::seconds kMakingTime{10};

std::uint32_t FlagOfEntry(std::int64_t entry) {
    const base::BaudRate* const rate = base::FindBaudRateByEntryValue(entry);
    return rate != nullptr ? rate->flag : 0;
}

}  // namespace

CVantoCLSerDevice* CVantoCLSerDevice::Create(const CDeviceInfo& info, CVantoCLSerPort& port) {
    const std::shared_ptr<CVantoCLSerDevice> device(new CVantoCLSerDevice(info, port),
                                                    [](CVantoCLSerDevice* self) { delete self; });
    device->m_self = device;
    return device.get();
}

CVantoCLSerDevice::CVantoCLSerDevice(const CDeviceInfo& info, CVantoCLSerPort& port)
    : GenApi::CNodeMapRef(kNodeMapName), m_info(info), m_tlParams(kNodeMapName), m_port(port) {}

CVantoCLSerDevice::~CVantoCLSerDevice() = default;

void CVantoCLSerDevice::DestroySelf() {
    const std::shared_ptr<CVantoCLSerDevice> self = std::move(m_self);
    Teardown();
}

void CVantoCLSerDevice::Teardown() noexcept {
    try {
        std::unique_ptr<CVantoCLSerStreamGrabber> grabber;
        {
            const std::lock_guard lock(m_streamGrabberLock);
            grabber = std::move(m_streamGrabber);
        }
        grabber.reset();
        if (m_open)
            Close();
        m_port.SetAutoCloseTimeout(0);
        if (m_port.IsConnected())
            m_port.Close(false);
    } catch (...) {
        LogTrace(DeviceLog(), tracelog::kError, "Exception in %hs for Device '%hs'.",
                 "Vanto::CVantoCLSerDevice::~CVantoCLSerDevice", m_deviceName);
    }
}

/**
 * \brief Connect the port where it is not, and set the camera's baud rate
 *
 * Sets the rate that the record's InitialBaudRate names, else the fastest that both the grabber's port and the camera
 * can do. A rate that can't be set is logged; the device is open all the same.
 *
 * \throw RuntimeException The record lacks PortID or DeviceID, or the camera can't be connected
 * \throw LogicalErrorException The device is open already
 */
void CVantoCLSerDevice::Open(AccessModeSet) {
    const gcstring name = m_info.GetFriendlyName();
    gcstring portId;
    if (!m_info.GetPropertyValue("PortID", portId)) {
        LogTrace(DeviceLog(), tracelog::kError, "Cannot get PortID from device info.");
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Cannot get device PortID from device info.");
    }
    gcstring deviceId;
    if (!m_info.GetPropertyValue("DeviceID", deviceId)) {
        LogTrace(DeviceLog(), tracelog::kError, "Cannot get DeviceID from device info.");
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Cannot get device DeviceID from device info.");
    }
    if (m_open) {
        static constexpr char kText[] = "Device '%hs' is already open and cannot be opened again.";
        LogTrace(DeviceLog(), tracelog::kError, kText, name);
        throw VANTO_EXCEPTION(LogicalErrorException, kSource)(kText, name);
    }
    if (!m_port.IsConnected() && !m_port.Connect(deviceId)) {
        LogTrace(DeviceLog(), tracelog::kError, "Could not open CLPort for device '%hs'.", name);
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Could not open CLPort '%hs' for device '%hs'.", portId, name);
    }
    m_port.SetDeviceName(name);
    m_deviceName = name;
    m_removalCallbacks.Arm(this, m_port.SetOwner(std::shared_ptr<IPortOwner>(m_self, this)));
    m_open = true;
    // Whoever gets an exception, which is one of memory then, has a device that is as closed as before.
    const auto end = [](CVantoCLSerDevice* device) { device->EndOpening(); };
    std::unique_ptr<CVantoCLSerDevice, decltype(end)> opening(this, end);
    try {
        NegotiateBaudRate(name);
    } catch (const GenericException& error) {
        LogTrace(DeviceLog(), tracelog::kWarning, "Error modifying baud rate node for device '%hs' Error='%hs'.", name,
                 error.GetDescription());
    }
    static_cast<void>(opening.release());
    LogTrace(DeviceLog(), tracelog::kInfo, "Device '%hs' opened", name);
}

void CVantoCLSerDevice::NegotiateBaudRate(const gcstring& name) {
    const GenApi::CEnumerationPtr node = _GetNodeMap() != nullptr ? _GetNode(kBaudRateNode) : nullptr;
    if (!node.IsValid()) {
        LogTrace(DeviceLog(), tracelog::kWarning,
                 "Node '%hs' not in nodemap of device '%hs'!!! Will skip baud rate maximizing. Please check your XML.",
                 kBaudRateNode, name);
        return;
    }
    const std::int64_t fastest = DisableUnsupportedRates(*node, name);
    m_oldBaudRate = node->GetIntValue();
    gcstring initial;
    if (m_info.GetPropertyValue("InitialBaudRate", initial) && !initial.empty())
        SetInitialBaudRate(*node, name, initial);
    else
        SetFastestBaudRate(*node, name, fastest);
}

// Returns the largest entry value that the port can do, 0 for none.
std::int64_t CVantoCLSerDevice::DisableUnsupportedRates(GenApi::IEnumeration& node, const gcstring& name) {
    const std::uint32_t supported = m_port.GetSupportedBaudRates();
    std::int64_t fastest = 0;
    GenApi::NodeList_t entries;
    node.GetEntries(entries);
    for (GenApi::INode* entryNode : entries) {
        auto* entry = dynamic_cast<GenApi::IEnumEntry*>(entryNode);
        if (entry == nullptr)
            continue;
        const std::int64_t value = entry->GetValue();
        if (value > kLargestBaudRateEntry) {
            LogTrace(DeviceLog(), tracelog::kError, "Invalid EnumValue '%hs' of %d.", entry->GetSymbolic(), value);
        } else if ((supported & FlagOfEntry(value)) == 0) {
            entryNode->ImposeAccessMode(GenApi::NA);
            LogTrace(DeviceLog(), tracelog::kDebug,
                     "Disabled EnumValue '%hs' for device '%hs' since the CLPort doesn't support it.",
                     entry->GetSymbolic(), name);
        } else if (value > fastest) {
            fastest = value;
        }
    }
    return fastest;
}

void CVantoCLSerDevice::SetInitialBaudRate(GenApi::IEnumeration& node, const gcstring& name, const gcstring& text) {
    try {
        node.FromString(text, true);
        LogTrace(DeviceLog(), tracelog::kDebug, "Set baud rate node for device '%hs' to '%hs' old value was %I64i.",
                 name, text, m_oldBaudRate);
    } catch (const GenericException& error) {
        LogTrace(DeviceLog(), tracelog::kWarning,
                 "Could not set initial baud rate to '%hs' for device '%hs' Error='%hs'.", text, name,
                 error.GetDescription());
    }
}

void CVantoCLSerDevice::SetFastestBaudRate(GenApi::IEnumeration& node, const gcstring& name, std::int64_t fastest) {
    try {
        node.SetIntValue(fastest, true);
        LogTrace(DeviceLog(), tracelog::kDebug,
                 "Automatically set baud rate node for device '%hs' to '%I64i' old value was %I64i.", name, fastest,
                 m_oldBaudRate);
    } catch (const GenericException& error) {
        LogTrace(DeviceLog(), tracelog::kWarning,
                 "Could not set initial baud rate to %I64i for device '%hs' Error='%hs'.", fastest, name,
                 error.GetDescription());
    }
}

/**
 * \brief Put the camera's old baud rate back, unless the Shift key is held, and close the port
 * \throw LogicalErrorException The device is not open
 */
void CVantoCLSerDevice::Close() {
    if (!m_open) {
        LogTrace(DeviceLog(), tracelog::kWarning, "Device '%hs' is not open and therefore won't be closed again.",
                 m_deviceName);
        throw VANTO_EXCEPTION(LogicalErrorException, kSource)("Device '%hs' is not open and cannot be closed.",
                                                              m_deviceName);
    }
    EndOpening();
}

void CVantoCLSerDevice::EndOpening() noexcept {
    if (m_oldBaudRate != 0 && !os::IsShiftKeyDown())
        RestoreBaudRate();
    DeregisterAutoCloseCallback();
    m_port.SetAutoCloseTimeout(0);
    // Before the port is closed: a probe that still asks this device finds its port closed, which is no removal.
    m_port.SetOwner(nullptr);
    if (m_port.IsConnected())
        m_port.Close(false);
    m_removalCallbacks.Disarm();
    m_open = false;
}

void CVantoCLSerDevice::RestoreBaudRate() noexcept {
    try {
        const GenApi::CEnumerationPtr node = _GetNode(kBaudRateNode);
        node->SetIntValue(m_oldBaudRate, true);
        LogTrace(DeviceLog(), tracelog::kDebug, "Restored old baud rate for device '%hs'.", m_deviceName);
    } catch (...) {
        LogTrace(DeviceLog(), tracelog::kWarning,
                 "Could not restore old baud rate for device '%hs'. Baud rate will be left as it is.", m_deviceName);
    }
}

void CVantoCLSerDevice::CreateNodeMapFromFile(const gcstring& path, const gcstring_vector& injected) {
    LoadFromFile(*this, path, injected);
    m_cameraName.Set(&_GetLock(), "camera's map");
    _Connect(&m_port);
}

void CVantoCLSerDevice::CreateNodeMapFromString(const gcstring& xml, const gcstring_vector& injected) {
    LoadFromString(*this, xml, injected);
    m_cameraName.Set(&_GetLock(), "camera's map");
    _Connect(&m_port);
}

/**
 * \brief The transport layer's parameters of this device, AutoCloseTimeout among them; built at the first call
 * \return The node map; unusable, logged, when it could not be built
 * \context Any thread
 */
GenApi::INodeMap* CVantoCLSerDevice::GetTLNodeMap() {
    try {
        LoadTLNodeMap();
        FollowAutoCloseTimeout();
    } catch (const GenericException& error) {
        LogTrace(DeviceLog(), tracelog::kError, "Could not load TL nodemap. Error: '%hs'", error.GetDescription());
    } catch (const std::exception& error) {
        LogTrace(DeviceLog(), tracelog::kError, "Unknown error while loading TL nodemap. Error: '%hs'", error.what());
    }
    const std::lock_guard lock(m_tlParamsLock);
    return m_tlParams._GetNodeMap();
}

// Nobody else has the map yet, so that nobody holds its lock.
void CVantoCLSerDevice::LoadTLNodeMap() {
    const std::lock_guard lock(m_tlParamsLock);
    if (m_tlParams._GetNodeMap() != nullptr)
        return;
    m_tlParams._LoadXMLFromString(kTransportLayerDescription);
    m_tlParamsName.Set(&m_tlParams._GetLock(), "TL map");
    m_mustFollow = true;
}

// Without m_tlParamsLock: thread T may be in a callback of the application that holds the map's own lock and calls
// GetTLNodeMap, while this thread waits for the map's lock. A value that T has set meanwhile takes effect when the node
// is invalidated. Once in the map's life, but for what failed.
void CVantoCLSerDevice::FollowAutoCloseTimeout() {
    {
        const std::lock_guard lock(m_tlParamsLock);
        if (!std::exchange(m_mustFollow, false))
            return;
    }
    try {
        GenApi::INode* node = m_tlParams._GetNode(kAutoCloseNode);
        if (node == nullptr)
            return;
        const GenApi::CallbackHandleType handle =
            GenApi::Register(node, *this, &CVantoCLSerDevice::OnAutoCloseTimeoutChanged, GenApi::cbPostInsideLock);
        {
            const std::lock_guard lock(m_tlParamsLock);
            m_autoCloseCallback = handle;
        }
        node->InvalidateNode();
    } catch (...) {
        const std::lock_guard lock(m_tlParamsLock);
        m_mustFollow = m_autoCloseCallback == 0;
        throw;
    }
}

void CVantoCLSerDevice::OnAutoCloseTimeoutChanged(GenApi::INode* node) {
    const GenApi::CIntegerPtr timeout = node;
    if (!timeout.IsValid())
        return;
    const std::int64_t milliseconds = timeout->GetValue();
    if (milliseconds >= 0 && milliseconds <= std::numeric_limits<std::uint32_t>::max())
        m_port.SetAutoCloseTimeout(static_cast<std::uint32_t>(milliseconds));
}

// Without m_tlParamsLock, as above: thread T may hold the map's lock and wait for m_tlParamsLock in GetTLNodeMap.
void CVantoCLSerDevice::DeregisterAutoCloseCallback() noexcept {
    GenApi::CallbackHandleType handle = 0;
    {
        const std::lock_guard lock(m_tlParamsLock);
        std::swap(handle, m_autoCloseCallback);
    }
    if (handle == 0)
        return;
    try {
        if (GenApi::INode* node = m_tlParams._GetNode(kAutoCloseNode))
            node->DeregisterCallback(handle);
    } catch (const std::exception& error) {
        LogTrace(DeviceLog(), tracelog::kWarning, "The auto-close timeout of device '%hs' is still followed: '%hs'.",
                 m_deviceName, error.what());
    }
}

/**
 * \brief Make the stream grabber at the first call
 *
 * It is made without a lock, as that uses the camera's node map: a thread that asks meanwhile may have that locked. So
 * nobody waits longer than kMakingTime for another thread to make it, nor at all in a callback of its own making.
 *
 * \return 1, or 0 when there is none; what went wrong is in the log. A failure is not tried again. 0 also, and only
 * this time, when it is still being made. \context Any thread
 */
std::uint32_t CVantoCLSerDevice::GetNumStreamGrabberChannels() {
    std::unique_lock lock(m_streamGrabberLock);
    const auto isNotBeingMade = [this] { return m_streamGrabberMaker == std::thread::id(); };
    if (m_streamGrabberMaker == std::this_thread::get_id() ||
        !m_streamGrabberMade.wait_for(lock, kMakingTime, isNotBeingMade)) {
        LogTrace(DeviceLog(), tracelog::kWarning, "The stream grabber is still being made.");
        return 0;
    }
    if (m_channelCount < 0)
        MakeStreamGrabber(lock);
    return static_cast<std::uint32_t>(m_channelCount);
}

// Gives the lock back for as long as it takes.
void CVantoCLSerDevice::MakeStreamGrabber(std::unique_lock<std::mutex>& lock) {
    m_streamGrabberMaker = std::this_thread::get_id();
    lock.unlock();
    std::exception_ptr failure;
    std::int32_t count = -1;
    try {
        count = CountStreamGrabberChannels();
    } catch (...) {
        failure = std::current_exception();
    }
    lock.lock();
    m_channelCount = count;
    m_streamGrabberMaker = {};
    m_streamGrabberMade.notify_all();
    if (failure)
        std::rethrow_exception(failure);
}

std::int32_t CVantoCLSerDevice::CountStreamGrabberChannels() {
    try {
        CreateStreamGrabber();
        return 1;
    } catch (const GenericException& error) {
        const std::string_view message = error.GetDescription();
        if (message.find("Parameter invalid value (Tap Output)") != std::string_view::npos ||
            message.find("Invalid firmware on grabber detected") != std::string_view::npos)
            MarkBadFirmware();
        return 0;
    }
}

void CVantoCLSerDevice::MarkBadFirmware() {
    try {
        GenApi::INodeMap* nodeMap = GetTLNodeMap();
        GenApi::INode* node = nodeMap != nullptr ? nodeMap->GetNode("BadFirmware") : nullptr;
        const GenApi::CIntegerPtr badFirmware = node;
        if (!badFirmware.IsValid())
            return;
        badFirmware->SetValue(1, true);
        node->ImposeAccessMode(GenApi::RO);
    } catch (const GenericException& error) {
        LogTrace(DeviceLog(), tracelog::kDebug, "Could not mark bad firmware: %s", error.GetDescription());
    }
}

// Returns false when there is one already. Only one thread comes here at a time.
bool CVantoCLSerDevice::CreateStreamGrabber() {
    if (m_streamGrabber)
        return false;
    gcstring deviceSpecific;
    if (!m_info.GetPropertyValue("DeviceSpecificString", deviceSpecific)) {
        static constexpr char kText[] = "No DeviceSpecificString in device info.";
        LogTrace(DeviceLog(), tracelog::kInfo, kText);
        throw VANTO_EXCEPTION(RuntimeException, kSource)(kText);
    }
    try {
        auto grabber = std::make_unique<CVantoCLSerStreamGrabber>(deviceSpecific, this);
        grabber->Initialize();
        const std::lock_guard lock(m_streamGrabberLock);
        m_streamGrabber = std::move(grabber);
        return true;
    } catch (const GenericException& error) {
        LogTrace(DeviceLog(), tracelog::kInfo, "Error initializing stream grabber object (err='%hs')",
                 error.GetDescription());
        throw;
    }
}

IStreamGrabber* CVantoCLSerDevice::GetStreamGrabber(std::uint32_t index) {
    if (index < GetNumStreamGrabberChannels()) {
        const std::lock_guard lock(m_streamGrabberLock);
        return m_streamGrabber.get();
    }
    LogTrace(DeviceLog(), tracelog::kWarning,
             "Invalid StreamIndex %u passed. StreamIndex must be less GetNumStreamGrabberChannels()!", index);
    return nullptr;
}

void CVantoCLSerDevice::CheckOpen() const {
    if (!m_open)
        throw VANTO_EXCEPTION(LogicalErrorException, kSource)("Illegal Camera Status, camera not open");
}

DeviceCallbackHandle CVantoCLSerDevice::RegisterRemovalCallback(const CDeviceRemovalCallback& callback) {
    CheckOpen();
    const DeviceCallbackHandle handle = m_removalCallbacks.Register(callback);
    LogTrace(DeviceLog(), tracelog::kDebug, "Registered removal callback with handle %u", handle);
    return handle;
}

bool CVantoCLSerDevice::DeregisterRemovalCallback(DeviceCallbackHandle handle) {
    CheckOpen();
    LogTrace(DeviceLog(), tracelog::kDebug, "Deregistering removal callback with handle %u", handle);
    return m_removalCallbacks.Deregister(handle);
}

// The port tells that the camera is gone.
void CVantoCLSerDevice::OnRemoval(std::uint64_t opening) noexcept {
    LogTrace(DeviceLog(), tracelog::kDebug, "Removal detected. Calling registered removal callbacks.");
    try {
        m_removalCallbacks.Fire(opening);
    } catch (const std::exception& error) {
        LogTrace(DeviceLog(), tracelog::kError, "Error during execution of removal callbacks. '%hs'", error.what());
    }
}

}  // namespace Vanto
