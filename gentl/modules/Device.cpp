/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Device: the host's view of an open camera
 */
#include "modules/Device.h"

#include <algorithm>

#include "GenApi/GenApi.h"
#include "modules/Interface.h"
#include "ports/DeviceEvents.h"
#include "ports/FeatureList.h"
#include "support/Identity.h"
#include "support/Log.h"

namespace gentl {

namespace {

constexpr std::uint64_t kNanosecondsPerSecond = 1000000000;

constexpr const char* kLockFeature = "TLParamsLocked";

}  // namespace

/// Some consumers crash where ID, vendor, model or serial number are missing: these are texts, if empty ones.
Info DeviceInfo(const CameraRecord& record, DEVICE_ACCESS_STATUS status, DEVICE_INFO_CMD command) {
    switch (command) {
        case DEVICE_INFO_ID:
            return record.id;
        case DEVICE_INFO_VENDOR:
            return record.vendor;
        case DEVICE_INFO_MODEL:
            return record.model;
        case DEVICE_INFO_TLTYPE:
            return std::string(kTransportType);
        case DEVICE_INFO_DISPLAYNAME:
            return record.DisplayName();
        case DEVICE_INFO_ACCESS_STATUS:
            return std::int32_t{status};
        case DEVICE_INFO_SERIAL_NUMBER:
            return record.serialNumber;
        case DEVICE_INFO_USER_DEFINED_NAME:
            if (record.userDefinedName.empty())
                ThrowNotAvailable(command);
            return record.userDefinedName;
        case DEVICE_INFO_VERSION:
            if (record.version.empty())
                ThrowNotAvailable(command);
            return record.version;
        case DEVICE_INFO_TIMESTAMP_FREQUENCY:
            return kNanosecondsPerSecond;
        default:
            ThrowUnknownCommand(command);
    }
}

/// Opens the camera; throws GenericException where that fails.
Device::Device(HandleTable& handles, std::shared_ptr<Interface> parent, Vanto::ITransportLayer& layer,
               CameraRecord record, bool readOnly)
    : Module(handles),
      m_parent(parent),
      m_record(std::move(record)),
      m_readOnly(readOnly),
      m_errors(std::make_shared<NoticeQueue>(EVENT_ERROR)),
      m_moduleEvents(std::make_shared<NoticeQueue>(EVENT_MODULE)),
      m_invalidated(std::make_shared<NoticeQueue>(EVENT_FEATURE_INVALIDATE)),
      m_camera(std::make_shared<OpenCamera>(layer, *m_record.info, [this] { OnLoss(); })) {
    m_camera->Use([this](Vanto::IVantoDevice& device) {
        if (device.GetNumStreamGrabberChannels() != 0)
            m_grabber = device.GetStreamGrabber(0);
    });
    m_remote = std::make_shared<RemotePort>(m_camera, m_record, MakeAdded(), readOnly);
    SetFeatures("TLDevice", "DevicePort", MakeFeatures());
}

Device::~Device() {
    Close();
}

void Device::Begin() {
    Handles().Add(m_remote);
}

/// Closes the stream and the camera. The second time it does nothing.
void Device::Close() noexcept {
    Retire();
    std::shared_ptr<Stream> stream;
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        stream.swap(m_stream);
    }
    if (stream)
        stream->Close();
    if (m_remote)
        Handles().Remove(*m_remote);
    m_camera->Close();
}

bool Device::IsOpen() const {
    const std::lock_guard lock(m_mutex);
    return !m_isClosed;
}

DEVICE_ACCESS_STATUS Device::Status() const noexcept {
    return m_readOnly ? DEVICE_ACCESS_STATUS_OPEN_READONLY : DEVICE_ACCESS_STATUS_OPEN_READWRITE;
}

void* Device::RemoteHandle() const {
    return m_remote->Handle();
}

// On the thread that found out, in the middle of its use of the camera: only tells.
void Device::OnLoss() {
    LogTrace(LogCategory(), Vanto::tracelog::kWarning, "Device '%s' is gone.", m_record.id);
    m_errors->Add(GC_ERR_IO, "The camera is gone");
    m_moduleEvents->Add(kDeviceLostEvent, "DeviceLost");
    std::shared_ptr<Stream> stream;
    {
        const std::lock_guard lock(m_mutex);
        stream = m_stream;
    }
    if (stream)
        stream->TellLoss();
}

// A start of the stream locks the camera's parameters, and a stop unlocks them. Where a register of the camera keeps
// that, the consumer's own node map does not know that it has changed.
Acquisition::LockListener Device::OnLock(GenApi::INodeMap& camera) const {
    GenApi::NodeList_t registers;
    if (const GenApi::INode* const node = camera.GetNode(kLockFeature))
        node->GetChildren(registers, GenApi::ctTerminalNodes);
    if (registers.empty())
        return [] {};
    return [invalidated = m_invalidated] { invalidated->Add(0, kLockFeature); };
}

/**
 * \brief Open the device's stream
 * \throw GenTLError NOT_IMPLEMENTED without a frame grabber, INVALID_ID, RESOURCE_IN_USE
 */
std::shared_ptr<Stream> Device::OpenStream(const std::string& id) {
    if (!HasStream())
        throw GenTLError(GC_ERR_NOT_IMPLEMENTED, "The device's port has no frame grabber");
    if (id != StreamId())
        throw GenTLError(GC_ERR_INVALID_ID, "The device has no stream '" + id + "'");
    const std::unique_lock opening(m_opening, std::try_to_lock);
    if (!opening)
        throw GenTLError(GC_ERR_RESOURCE_IN_USE, "The stream is being opened");
    {
        std::shared_ptr<Stream> closed;  // destroyed without the lock, which T wants that loses the camera in a start
        const std::lock_guard lock(m_mutex);
        if (m_stream && m_stream->IsOpen())
            throw GenTLError(GC_ERR_RESOURCE_IN_USE, "The stream is open already");
        closed.swap(m_stream);
    }
    return m_camera->Use([&](Vanto::IVantoDevice& device) {
        const auto stream = std::make_shared<Stream>(Handles(), shared_from_this(), m_camera, *m_grabber, id,
                                                     OnLock(*device.GetNodeMap()));
        const std::lock_guard lock(m_mutex);
        if (m_isClosed)
            throw GenTLError(GC_ERR_INVALID_HANDLE, "The device was closed");
        Handles().Add(stream);
        m_stream = stream;
        return stream;
    });
}

// The port that serves them belongs to this device.
AddedFeatures Device::MakeAdded() {
    AddedFeatures added{.payloadSize = nullptr,
                        .width = nullptr,
                        .height = nullptr,
                        .vendor = m_record.vendor,
                        .model = m_record.model,
                        .serialNumber = m_record.serialNumber,
                        .userDefinedName = m_record.userDefinedName};
    if (m_grabber != nullptr) {
        const auto number = [camera = m_camera, grabber = m_grabber](const char* node) {
            return [camera, grabber, node] {
                return camera->Use([&](Vanto::IVantoDevice&) {
                    const GenApi::CIntegerPtr integer = grabber->GetNodeMap()->GetNode(node);
                    return integer->GetValue();
                });
            };
        };
        added.payloadSize = number("PayloadSize");
        added.width = number("Width");
        added.height = number("Height");
    }
    return added;
}

std::vector<Feature> Device::MakeFeatures() {
    const auto text = [](const std::string& value) { return [value] { return value; }; };
    FeatureList list;
    list.Category("DeviceInformation")
        .Text("DeviceID", "ID of the device", text(m_record.id))
        .Text("DeviceVendorName", "Name of the camera's maker", text(m_record.vendor))
        .Text("DeviceModelName", "Model of the camera", text(m_record.model))
        .Text("DeviceSerialNumber", "Serial number of the camera", text(m_record.serialNumber))
        .Text("DeviceUserID", "Name that a user has given to the camera", text(m_record.userDefinedName))
        .Text("DeviceDisplayName", "Name to show", text(m_record.DisplayName()))
        .Text("DeviceVersion", "Version of the camera", text(m_record.version))
        .Enumeration("DeviceType", "Kind of transport", TransportTypes(), [] { return 0; })
        .Integer("DeviceTimestampFrequency", "Ticks of time stamps per second",
                 [] { return static_cast<std::int64_t>(kNanosecondsPerSecond); })
        .Category("DeviceControl")
        .Enumeration("DeviceAccessStatus", "How the device is open", AccessStatuses(),
                     [this] { return std::int64_t{Status()}; })
        .Category("StreamEnumeration")
        .Index(
            "StreamSelector", "Chooses a stream", [] { return 0; },
            [](std::int64_t value) {
                if (value != 0)
                    throw GenTLError(GC_ERR_INVALID_VALUE, "The device has no such stream");
            })
        .Text(
            "StreamID", "ID of the stream", [this] { return HasStream() ? StreamId() : std::string(); },
            "StreamSelector")
        .Category("SerialPort");
    m_camera->Use([&](Vanto::IVantoDevice& device) {
        if (GenApi::INodeMap* const map = device.GetTLNodeMap())
            list.Mirror(*map);
    });
    return list.Take();
}

PortFacts Device::Facts() const {
    return {.id = m_record.id,
            .vendor = m_record.vendor,
            .model = m_record.model,
            .module = "TLDevice",
            .version = ProducerVersion(),
            .portName = "DevicePort"};
}

// Some features are nodes of the device's transport-layer parameters, which end with it.
void Device::Read(std::uint64_t address, std::span<std::uint8_t> bytes) {
    m_camera->Use([&](Vanto::IVantoDevice&) { Module::Read(address, bytes); });
}

void Device::Write(std::uint64_t address, std::span<const std::uint8_t> bytes) {
    if (m_readOnly)
        throw GenTLError(GC_ERR_ACCESS_DENIED, "The device was opened for reading");
    m_camera->Use([&](Vanto::IVantoDevice&) { Module::Write(address, bytes); });
}

std::shared_ptr<EventQueue> Device::QueueOf(EVENT_TYPE type) {
    switch (type) {
        case EVENT_ERROR:
            return m_errors;
        case EVENT_FEATURE_INVALIDATE:
            return m_invalidated;
        case EVENT_MODULE:
            return m_moduleEvents;
        default:
            return nullptr;
    }
}

}  // namespace gentl
