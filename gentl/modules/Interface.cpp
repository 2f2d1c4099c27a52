/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Interface: one serial port that the configuration enables
 */
#include "modules/Interface.h"

#include <fmt/format.h>

#include <algorithm>

#include "modules/System.h"
#include "ports/FeatureList.h"
#include "support/Deadline.h"
#include "support/Identity.h"

namespace gentl {

namespace {

// A silent port takes its driver some seconds; a device that is opened without an update may wait for that.
constexpr std::uint64_t kOpenPatience = 30000;  // ms

}  // namespace

Interface::Interface(HandleTable& handles, std::shared_ptr<System> parent, Vanto::ITransportLayer& layer,
                     Discovery& discovery, std::string portId)
    : Module(handles), m_parent(parent), m_layer(layer), m_discovery(discovery), m_portId(std::move(portId)) {
    SetFeatures("TLInterface", "InterfacePort", MakeFeatures());
}

Interface::~Interface() {
    Close();
}

/// Closes the device, too. The second time it does nothing.
void Interface::Close() noexcept {
    Retire();
    std::shared_ptr<Device> device;
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        device.swap(m_device);
    }
    if (device)
        device->Close();
}

bool Interface::IsOpen() const {
    const std::lock_guard lock(m_mutex);
    return !m_isClosed;
}

Info Interface::GetInfo(const std::string& portId, INTERFACE_INFO_CMD command) {
    switch (command) {
        case INTERFACE_INFO_ID:
            return portId;
        case INTERFACE_INFO_DISPLAYNAME:
            return "Camera Link port " + portId;
        case INTERFACE_INFO_TLTYPE:
            return std::string(kTransportType);
        default:
            ThrowUnknownCommand(command);
    }
}

// What the port has now, as far as that is known.
std::optional<Interface::Listed> Interface::Known() const {
    std::shared_ptr<Device> device;
    {
        const std::lock_guard lock(m_mutex);
        device = m_device;
    }
    if (device && device->IsOpen())
        return Listed{device->Record(), device->Status()};
    const std::optional<PortRecord> port = m_discovery.Find(m_portId);
    if (port && !port->camera && port->state == PortRecord::State::kBusy)
        return Listed{RecordOfPort(m_portId), DEVICE_ACCESS_STATUS_BUSY};
    if (!port || !port->camera)
        return std::nullopt;
    switch (port->state) {
        case PortRecord::State::kEmpty:
            return std::nullopt;
        case PortRecord::State::kCamera:
            return Listed{*port->camera, DEVICE_ACCESS_STATUS_READWRITE};
        case PortRecord::State::kBusy:
            return Listed{*port->camera, DEVICE_ACCESS_STATUS_BUSY};
        case PortRecord::State::kUnknown:
            return Listed{*port->camera, DEVICE_ACCESS_STATUS_UNKNOWN};
    }
    return std::nullopt;
}

/**
 * \brief Renew the list
 * \param[in] timeout Milliseconds to wait for the port's answer; what is known by then is the list
 * \return Whether it has changed
 */
bool Interface::UpdateDevices(std::uint64_t timeout) {
    m_discovery.Begin();
    m_discovery.WaitForPort(m_portId, DeadlineAfter(timeout));
    std::optional<Listed> now = Known();
    const std::lock_guard lock(m_mutex);
    const bool hasChanged = now.has_value() != m_list.has_value() ||
                            (now && (now->camera.id != m_list->camera.id || now->status != m_list->status));
    m_list = std::move(now);
    return hasChanged;
}

std::size_t Interface::CountDevices() const {
    const std::lock_guard lock(m_mutex);
    return m_list ? 1 : 0;
}

std::optional<Interface::Listed> Interface::InList(std::size_t index) const {
    const std::lock_guard lock(m_mutex);
    return index == 0 ? m_list : std::nullopt;
}

std::string Interface::DeviceId(std::size_t index) const {
    const std::optional<Listed> listed = InList(index);
    if (!listed)
        throw GenTLError(GC_ERR_INVALID_INDEX, fmt::format("The list has no device {}", index));
    return listed->camera.id;
}

// There is one camera behind the port at most, so that the port's ID means it as well.
bool Interface::IsNamed(const CameraRecord& camera, const std::string& id) const {
    return id == m_portId || camera.IsNamed(id);
}

// The status is that of now: of the list only who is in it counts.
Interface::Listed Interface::InList(const std::string& id) const {
    std::optional<Listed> listed = Known();
    if (!listed || !IsNamed(listed->camera, id))
        listed = InList(std::size_t{0});
    if (!listed || !IsNamed(listed->camera, id))
        throw GenTLError(GC_ERR_INVALID_ID, fmt::format("The port has no device '{}'", id));
    return *listed;
}

Info Interface::GetDeviceInfo(const std::string& id, DEVICE_INFO_CMD command) const {
    const Listed listed = InList(id);
    return DeviceInfo(listed.camera, listed.status, command);
}

// Also without an update before: what is not known whole yet is waited for.
CameraRecord Interface::Find(const std::string& id) {
    const auto isKnown = [&](const std::optional<PortRecord>& port) {
        return port && port->camera && port->camera->info && port->state == PortRecord::State::kCamera &&
               IsNamed(*port->camera, id);
    };
    std::optional<PortRecord> port = m_discovery.Find(m_portId);
    if (!isKnown(port)) {
        m_discovery.Begin();
        m_discovery.WaitForLook(DeadlineAfter(kOpenPatience));
        port = m_discovery.Find(m_portId);
    }
    if (isKnown(port))
        return *port->camera;
    if (port && port->state == PortRecord::State::kBusy && (!port->camera || IsNamed(*port->camera, id)))
        throw GenTLError(GC_ERR_ACCESS_DENIED, "Another program uses the port " + m_portId);
    throw GenTLError(GC_ERR_INVALID_ID, fmt::format("The port {} has no device '{}'", m_portId, id));
}

/**
 * \brief Open the camera
 * \throw GenTLError INVALID_ID, RESOURCE_IN_USE, ACCESS_DENIED, INVALID_PARAMETER, IO
 */
std::shared_ptr<Device> Interface::OpenDevice(const std::string& id, DEVICE_ACCESS_FLAGS flags) {
    if (flags < DEVICE_ACCESS_READONLY || flags > DEVICE_ACCESS_EXCLUSIVE)
        throw GenTLError(GC_ERR_INVALID_PARAMETER, fmt::format("A device can't be opened with access {}", flags));
    const std::unique_lock opening(m_opening, std::try_to_lock);
    if (!opening)
        throw GenTLError(GC_ERR_RESOURCE_IN_USE, "The device is being opened");
    {
        std::shared_ptr<Device> closed;  // destroyed without the lock: its camera may still be in use
        const std::lock_guard lock(m_mutex);
        if (m_device && m_device->IsOpen()) {
            if (!IsNamed(m_device->Record(), id))
                throw GenTLError(GC_ERR_INVALID_ID, fmt::format("The port has no device '{}'", id));
            throw GenTLError(GC_ERR_RESOURCE_IN_USE, "The device is open already");
        }
        closed.swap(m_device);
    }
    auto device =
        std::make_shared<Device>(Handles(), shared_from_this(), m_layer, Find(id), flags == DEVICE_ACCESS_READONLY);
    {
        const std::lock_guard lock(m_mutex);
        if (m_isClosed)
            throw GenTLError(GC_ERR_INVALID_HANDLE, "The interface was closed");
        Handles().Add(device);
        device->Begin();
        m_device = device;
    }
    return device;
}

std::string Interface::SelectedText(std::string CameraRecord::*member) const {
    const std::optional<Listed> listed = InList(static_cast<std::size_t>(m_selected.load()));
    return listed ? listed->camera.*member : std::string();
}

std::vector<Feature> Interface::MakeFeatures() {
    const auto selected = [this](std::string CameraRecord::*member) {
        return [this, member] { return SelectedText(member); };
    };
    const auto status = [this] {
        const std::optional<Listed> listed = Known();
        return std::int64_t{listed ? listed->status : DEVICE_ACCESS_STATUS_UNKNOWN};
    };
    const auto select = [this](std::int64_t value) {
        if (value < 0 || value >= std::max<std::int64_t>(1, static_cast<std::int64_t>(CountDevices())))
            throw GenTLError(GC_ERR_INVALID_VALUE, "The list has no such device");
        m_selected = value;
    };
    FeatureList list;
    list.Category("InterfaceInformation")
        .Text("InterfaceID", "ID of the interface: the serial port's", [this] { return m_portId; })
        .Text("InterfaceDisplayName", "Name to show", [this] { return "Camera Link port " + m_portId; })
        .Enumeration("InterfaceType", "Kind of transport", TransportTypes(), [] { return 0; })
        .Integer("InterfaceTLVersionMajor", "Major version of GenTL", [] { return kGenTLMajor; })
        .Integer("InterfaceTLVersionMinor", "Minor version of GenTL", [] { return kGenTLMinor; })
        .Category("DeviceEnumeration")
        .Command("DeviceUpdateList", "Looks for the camera again", [this] { UpdateDevices(kFeatureUpdatePatience); })
        .Index(
            "DeviceSelector", "Chooses a device of the list", [this] { return m_selected.load(); }, select)
        .Text("DeviceID", "ID of the chosen device", selected(&CameraRecord::id), "DeviceSelector")
        .Text("DeviceVendorName", "Name of its maker", selected(&CameraRecord::vendor), "DeviceSelector")
        .Text("DeviceModelName", "Its model", selected(&CameraRecord::model), "DeviceSelector")
        .Text("DeviceSerialNumber", "Its serial number", selected(&CameraRecord::serialNumber), "DeviceSelector")
        .Text("DeviceUserID", "Its user's name", selected(&CameraRecord::userDefinedName), "DeviceSelector")
        .Enumeration("DeviceAccessStatus", "Whether it can be opened", AccessStatuses(), status, "DeviceSelector")
        .Integer(
            "DeviceTLVersionMajor", "Major version of GenTL", [] { return kGenTLMajor; }, "DeviceSelector")
        .Integer(
            "DeviceTLVersionMinor", "Minor version of GenTL", [] { return kGenTLMinor; }, "DeviceSelector");
    return list.Take();
}

PortFacts Interface::Facts() const {
    return {.id = m_portId,
            .vendor = kVendor,
            .model = kModel,
            .module = "TLInterface",
            .version = ProducerVersion(),
            .portName = "InterfacePort"};
}

}  // namespace gentl
