/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why a camera that the user named can't be used, as errors that end a command
 */
#include "cameras/CameraTrouble.h"

#include <fmt/format.h>

#include "cameras/DeviceChoice.h"
#include "cameras/PortAdvice.h"
#include "cameras/PortUser.h"
#include "cameras/Reasons.h"
#include "cameras/Records.h"
#include "configuration/ConfigurationPath.h"
#include "output/Text.h"

namespace tools {

namespace {

/// "camera 0, Marlow H2048 (S0) on COM_Port#cam0," or, where it was not called by its number, without that.
std::string Subject(const KnownCamera& camera, const std::string& device) {
    const std::string name =
        fmt::format("{} on {}", NameOf(RecordOf(camera.address)), Printable(camera.address.portId));
    return NumberFrom(device) == camera.number ? fmt::format("camera {}, {},", camera.number, name) : name;
}

std::string WhatIsThere(const std::string& portId, const PortWatch& ports) {
    const auto news = ports.Of(portId);
    if (news && !news->deviceId.empty())
        return NameOf(RecordOf({portId, news->deviceId})) + " is there now";
    if (!news && EnabledEntriesOf(portId).empty())
        return "the port is not enabled any more";
    if (!news)
        return "the port is not there now";
    return Printable(AdviceOn(portId, news).reason);
}

}  // namespace

ToolError InUse(const KnownCamera& camera, const std::string& device, const PortNews& news) {
    return ToolError(fmt::format("{} is in use by {}", Subject(camera, device), UserOf(news).Text()),
                     AdviceOn(camera.address.portId, news).hint);
}

ToolError Missing(const KnownCamera& camera, const std::string& device, const PortWatch& ports) {
    const auto news = ports.Of(camera.address.portId);
    if (news && news->IsInUse())
        return InUse(camera, device, *news);
    const bool isAnother = news && !news->deviceId.empty();
    const std::string hint = isAnother || !news ? std::string() : AdviceOn(camera.address.portId, news).hint + " ";
    return ToolError(
        fmt::format("{} does not answer: {}", Subject(camera, device), WhatIsThere(camera.address.portId, ports)),
        hint + "'vanto-cl list' shows the cameras that are there.", ExitCode::kNoDevice);
}

ToolError NotEnabled(const std::string& portId) {
    const std::string path = Printable(FindConfigurationPath().path.string());
    return ToolError(fmt::format("port '{}' is not enabled in '{}'", Printable(portId), path),
                     "Cameras are looked for on enabled ports only; 'vanto-cl config check' explains the file.",
                     ExitCode::kNoDevice);
}

ToolError NoCamera(const std::string& portId, const PortWatch& ports) {
    const PortAdvice advice = AdviceOn(portId, ports.Of(portId));
    return ToolError(fmt::format("port '{}': {}", Printable(portId), Printable(advice.reason)), advice.hint,
                     advice.state == PortState::kInUse ? ExitCode::kFailed : ExitCode::kNoDevice);
}

ToolError NoCameraAtAll(const TransportLayer& layer, const Enumeration& enumeration, const std::string& device) {
    std::string hint;
    for (const Reason& reason : WhyNoCamera(layer, enumeration))
        hint += fmt::format("{}{}{}{}", hint.empty() ? "" : "\n", reason.cause, reason.remedy.empty() ? "" : "\n  ",
                            reason.remedy);
    return ToolError(fmt::format("there is no camera '{}': no camera was found", device), hint, ExitCode::kNoDevice);
}

}  // namespace tools
