/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Discovery: which cameras are behind which ports, found in the background
 */
#include "discovery/Discovery.h"

#include <algorithm>
#include <exception>
#include <string_view>

#include "clser/ClSerial.h"
#include "discovery/LastCamera.h"
#include "support/Log.h"

namespace gentl {

namespace {

// The transport layer tells in its log, first of all, which ports it is going to ask; the texts are part of its
// interface. What comes behind them says that the list is whole.
constexpr const char* kLogRules = "Vanto.CLSer.TL:debug";
constexpr std::string_view kUsablePort = "Valid usable PortID '%s'";
constexpr std::string_view kBehindPorts[] = {
    "No valid usable PortIDs due to no enabled ports in PortConfiguration.xml. Enumeration will return 0 devices.",
    "Found DeviceIDTemplate '%s'", "No usable usable DeviceIDTemplates found!"};

bool Contains(const std::vector<std::string>& list, const std::string& text) {
    return std::ranges::find(list, text) != list.end();
}

}  // namespace

Discovery::Discovery(Vanto::ITransportLayer& layer) : m_layer(layer) {
    CLProtocol::SetStopRequested(false);
    CLProtocol::SetActivityListener([this](const CLProtocol::Activity& activity) { OnActivity(activity); });
    m_thread = std::thread([this] { Run(); });
}

/// A look that is under way ends early.
Discovery::~Discovery() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    CLProtocol::SetStopRequested(true);
    m_thread.join();
    CLProtocol::SetActivityListener({});
    CLProtocol::SetStopRequested(false);
}

/// Starts a look for cameras, unless one is under way.
void Discovery::Begin() {
    {
        const std::lock_guard lock(m_mutex);
        if (m_isLooking || m_isWanted)
            return;
        m_isWanted = true;
        m_arePortsKnown = false;
        m_asked.clear();
    }
    m_changed.notify_all();
}

/// True once the look that was begun knows which ports there are.
bool Discovery::WaitForPorts(Clock::time_point deadline) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_until(lock, deadline,
                                [this] { return m_arePortsKnown || (!m_isLooking && !m_isWanted) || m_isEnding; });
}

/// True once the look that was begun has asked the port, or ended.
bool Discovery::WaitForPort(const std::string& portId, Clock::time_point deadline) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_until(
        lock, deadline, [&] { return Contains(m_asked, portId) || (!m_isLooking && !m_isWanted) || m_isEnding; });
}

/// True once the look that was begun has ended.
bool Discovery::WaitForLook(Clock::time_point deadline) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_until(lock, deadline, [this] { return (!m_isLooking && !m_isWanted) || m_isEnding; });
}

/// The ports, in the transport layer's order.
std::vector<PortRecord> Discovery::Ports() const {
    const std::lock_guard lock(m_mutex);
    return m_ports;
}

std::optional<PortRecord> Discovery::Find(const std::string& portId) const {
    const std::lock_guard lock(m_mutex);
    const auto found = std::ranges::find(m_ports, portId, &PortRecord::portId);
    return found != m_ports.end() ? std::optional(*found) : std::nullopt;
}

// The discovery's thread D: waits here for somebody who wants a look, holding nothing meanwhile.
void Discovery::Run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isWanted || m_isEnding; });
        if (m_isEnding)
            return;
        m_isWanted = false;
        m_isLooking = true;
        m_seen.clear();
        lock.unlock();
        Look();
        lock.lock();
        m_isLooking = false;
        m_changed.notify_all();
    }
}

void Discovery::Look() {
    try {
        const Vanto::tracelog::LogSubscription subscription(
            [this](const Vanto::tracelog::LogMessage& message) { OnMessage(message); }, kLogRules);
        Vanto::DeviceInfoList found;
        m_layer.EnumerateDevices(found);
        TakeRecords(found);
    } catch (const std::exception& error) {
        LogTrace(LogCategory(), Vanto::tracelog::kError, "Looking for cameras failed: %s", error.what());
    }
}

void Discovery::OnMessage(const Vanto::tracelog::LogMessage& message) {
    const bool isPort = message.format == kUsablePort && !message.arguments.empty();
    const bool isBehind = std::ranges::find(kBehindPorts, message.format) != std::end(kBehindPorts);
    if (!isPort && !isBehind)
        return;
    const std::lock_guard lock(m_mutex);
    if (!m_isLooking)
        return;
    if (isPort) {
        m_seen.push_back(message.arguments.front());
    } else if (!m_arePortsKnown) {
        KeepPortsLocked();
        m_arePortsKnown = true;
        m_changed.notify_all();
    }
}

// What was known of a port stays until it is asked again.
void Discovery::KeepPortsLocked() {
    std::vector<PortRecord> ports;
    for (const std::string& portId : m_seen) {
        const PortRecord* const known = FindLocked(portId);
        ports.push_back(known != nullptr ? *known : PortRecord{.portId = portId, .camera = {}});
    }
    m_ports = std::move(ports);
}

PortRecord* Discovery::FindLocked(const std::string& portId) {
    const auto found = std::ranges::find(m_ports, portId, &PortRecord::portId);
    return found != m_ports.end() ? &*found : nullptr;
}

// Called on the discovery's thread, and on any that opens a device: that says something of its port as well.
void Discovery::OnActivity(const CLProtocol::Activity& activity) {
    using Kind = CLProtocol::Activity::Kind;
    if (activity.kind != Kind::kAnswered && activity.kind != Kind::kFailed)
        return;
    const std::string portId = activity.portId.str();
    const bool hasAnswered = activity.kind == Kind::kAnswered && !activity.deviceId.empty();
    std::optional<std::string> last;
    if (hasAnswered)
        RememberCamera(portId, activity.deviceId.str());
    else if (activity.errorCode == CL_ERR_PORT_IN_USE)
        last = LastCamera(portId);
    const std::lock_guard lock(m_mutex);
    PortRecord* const port = FindLocked(portId);
    if (port == nullptr)
        return;
    if (hasAnswered) {
        CameraRecord camera = RecordOfDeviceId(activity.deviceId.str());
        if (!port->camera || port->camera->id != camera.id)
            port->camera = std::move(camera);
        port->state = PortRecord::State::kCamera;
        m_asked.push_back(port->portId);
    } else if (activity.errorCode == CL_ERR_PORT_IN_USE) {
        port->state = PortRecord::State::kBusy;
        if (!port->camera && last)
            port->camera = RecordOfDeviceId(*last);
        m_asked.push_back(port->portId);
    }
    m_changed.notify_all();
}

// A port without a camera is known as such only now: it is asked by several drivers, several times. One that was in use
// before this look may have been given back.
void Discovery::TakeRecords(const Vanto::DeviceInfoList& found) {
    const std::lock_guard lock(m_mutex);
    if (m_isEnding)
        return;
    if (!m_arePortsKnown)
        KeepPortsLocked();
    for (PortRecord& port : m_ports)
        if (port.state != PortRecord::State::kBusy || !Contains(m_asked, port.portId))
            port = {.portId = port.portId, .state = PortRecord::State::kEmpty, .camera = {}};
    for (const Vanto::CDeviceInfo& info : found) {
        if (PortRecord* const port = FindLocked(PropertyOf(info, "PortID"))) {
            port->camera = RecordOfInfo(info);
            port->state = PortRecord::State::kCamera;
        }
    }
    m_arePortsKnown = true;
}

}  // namespace gentl
