/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CameraSearch: from what a user calls a camera to the camera, with as few ports asked as possible
 */
#include "cameras/CameraSearch.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "CLProtocol/CLPort.h"
#include "cameras/CameraTrouble.h"
#include "cameras/DeviceChoice.h"
#include "cameras/Reasons.h"
#include "cameras/Records.h"
#include "error/ExitCode.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Clock.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

constexpr std::uint32_t kProbeTimeout = 400;  // milliseconds, as the transport layer allows

/// The port that a DEVICE argument names, in a full name, too; empty when it names none of this machine.
std::string PortNamedBy(const std::string& device) {
    for (const std::string& port : MachinePorts())
        if (device == port || device.starts_with(port + "|"))
            return port;
    return {};
}

std::optional<CameraAddress> TheSameCamera(const std::vector<CameraAddress>& found, const CameraAddress& wanted) {
    std::vector<CameraAddress> same;
    std::ranges::copy_if(found, std::back_inserter(same), [&](const CameraAddress& one) {
        return one.IsSameCamera(wanted) && (!wanted.SerialNumber().empty() || one.portId == wanted.portId);
    });
    return same.size() == 1 ? std::optional(same.front()) : std::nullopt;
}

}  // namespace

/**
 * \brief Find the camera that a DEVICE argument names, and use it
 * \param[in] device Number in the last list, serial number, friendly name, full name or PortID
 * \param[in] use Called with its record, for a camera that is not where it was a second time; what it throws once the
 *                camera has answered is passed on
 *
 * A camera that is known is used where it was, and the driver of its port confirms that it is the same one; only
 * when it is not is every port asked once. A number never stands for another camera than the one that a list has shown
 * under it.
 *
 * \throw ToolError There is no such camera (kNoDevice), the argument names several (kUsage), or its port is in use
 */
void CameraSearch::Find(const std::string& device, const Use& use) const {
    const KnownCameras known = LoadKnownCameras(m_output);
    if (const std::string port = PortNamedBy(device); port == device && !device.empty())
        return UsePort(port, known, use);
    if (const std::optional<KnownCamera> camera = ChooseDevice(known.All(), device))
        return UseKnown(*camera, device, use);
    if (NumberFrom(device) && !known.All().empty())
        throw ToolError(fmt::format("no list has shown a camera with the number {}", device),
                        "'vanto-cl list' looks for cameras and shows their numbers.", ExitCode::kNoDevice);
    UseUnknown(device, known, use);
}

void CameraSearch::UseKnown(const KnownCamera& camera, const std::string& device, const Use& use) const {
    if (TryToUse(camera.address, use))
        return;
    ThrowIfInterrupted();
    const auto news = m_layer.Ports().Of(camera.address.portId);
    if (news && news->IsInUse())
        throw InUse(camera, device, *news);
    const Enumeration enumeration = EnumerateAndRemember(m_layer, m_output);
    ThrowIfInterrupted();
    const std::optional<CameraAddress> now = TheSameCamera(enumeration.Addresses(), camera.address);
    if (!now || !TryToUse(*now, use))
        throw Missing(camera, device, m_layer.Ports());
}

void CameraSearch::UsePort(const std::string& portId, const KnownCameras& known, const Use& use) const {
    if (EnabledEntriesOf(portId).empty())
        throw NotEnabled(portId);
    if (const KnownCamera* const last = known.LastAt(portId); last != nullptr && TryToUse(last->address, use))
        return;
    ThrowIfInterrupted();
    const auto news = m_layer.Ports().Of(portId);
    if (const KnownCamera* const last = known.LastAt(portId); last != nullptr && news && news->IsInUse())
        throw InUse(*last, portId, *news);
    if (news && (news->IsInUse() || news->IsNoAnswer()))
        throw NoCamera(portId, m_layer.Ports());
    const std::string deviceId = AskPort(portId);
    ThrowIfInterrupted();
    if (deviceId.empty() || !TryToUse({portId, deviceId}, use))
        throw NoCamera(portId, m_layer.Ports());
    std::set<std::string> others;
    for (const std::string& port : MachinePorts())
        if (port != portId)
            others.insert(port);
    ChangeKnownCameras(m_output, [&](KnownCameras& changed) { changed.Remember({{portId, deviceId}}, others, Now()); });
}

void CameraSearch::UseUnknown(const std::string& device, const KnownCameras& known, const Use& use) const {
    const Enumeration enumeration = EnumerateAndRemember(m_layer, m_output);
    ThrowIfInterrupted();
    const std::set<std::string> inUse = enumeration.PortsInUse();
    if (NumberFrom(device) && known.All().empty() && !inUse.empty())
        throw ToolError(fmt::format("which camera has the number {} can't be told: port '{}' is in use", device,
                                    Printable(*inUse.begin())),
                        "'vanto-cl list' gives the cameras their numbers.", ExitCode::kNoDevice);
    const std::vector<KnownCamera> found = enumeration.Numbered(LoadKnownCameras(m_output));
    if (const std::optional<KnownCamera> camera = ChooseDevice(found, device)) {
        if (!TryToUse(camera->address, use))
            throw Missing(*camera, device, m_layer.Ports());
        return;
    }
    throw found.empty() ? NoCameraAtAll(m_layer, enumeration, device)
                        : ToolError(fmt::format("there is no camera '{}'; the cameras are:", device), Candidates(found),
                                    ExitCode::kNoDevice);
}

// False when the camera could not be connected to; m_layer.Ports() knows why.
bool CameraSearch::TryToUse(const CameraAddress& address, const Use& use) const {
    Vanto::CDeviceInfo record = RecordOf(address);
    if (!Complete(m_layer, record))
        return false;
    try {
        use(record);
        return true;
    } catch (const std::exception&) {
        const auto news = m_layer.Ports().Of(address.portId);
        if (news && news->hasFailed)
            return false;
        throw;
    }
}

// Looks for a camera on this port only; empty when there is none.
std::string CameraSearch::AskPort(const std::string& portId) const {
    const Progress progress(m_output, "Looking for a camera on " + Printable(portId));
    for (const std::string& one : UsableTemplates()) {
        try {
            const GenICam::gcstring found = CLProtocol::CCLPort::ProbeDevice(portId, one, kProbeTimeout);
            if (!found.empty())
                return found.str();
        } catch (const GenICam::GenericException&) {
            const auto news = m_layer.Ports().Of(portId);
            if (news && (news->IsInUse() || news->IsNoAnswer()))
                return {};
        }
    }
    return {};
}

}  // namespace tools
