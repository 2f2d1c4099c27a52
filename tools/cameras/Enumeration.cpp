/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One look for cameras, and what was logged meanwhile
 */
#include "cameras/Enumeration.h"

#include <fmt/format.h>

#include <algorithm>

#include "CLProtocol/CLPort.h"
#include "CLProtocol/DeviceID.h"
#include "cameras/LogTexts.h"
#include "system/FileAccess.h"

namespace tools {

namespace {

using Vanto::tracelog::LogMessage;

bool Contains(const std::vector<std::string>& texts, const std::string& text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// Asks a port once more, to hear in the words of the libraries below why there is no camera.
std::string AnswerOf(const std::string& portId) {
    constexpr std::uint32_t kProbeTimeout = 400;  // milliseconds, as the transport layer allows
    try {
        GenICam::gcstring_vector templates;
        CLProtocol::CCLPort::GetDeviceIDTemplates(templates);
        for (const GenICam::gcstring& candidate : templates) {
            const CLProtocol::CDeviceID deviceId(candidate);
            if (deviceId.GetCameraManufacturer() == "Marlow" &&
                !CLProtocol::CCLPort::ProbeDevice(portId, candidate, kProbeTimeout).empty())
                return "a camera answered when asked once more";
        }
    } catch (const GenICam::GenericException& failure) {
        return failure.GetDescription();
    }
    return {};
}

SilentPort Explain(const Enumeration& enumeration, const std::string& portId, bool askAgain) {
    const std::filesystem::path device = DeviceOfPort(portId);
    if (!device.empty()) {
        const FileAccess access = AccessTo(device);
        if (access.exists && (!access.readable || !access.writable))
            return {portId, fmt::format("user {} may not use {}", UserName(), device.string()),
                    AdviceOnAccess(device, access)};
    }
    for (const LogMessage& message : enumeration.log)
        if (message.format == log_texts::kOtherError && message.arguments.size() == 2 && message.arguments[0] == portId)
            return {portId, message.arguments[1], {}};
    const std::string answer = askAgain ? AnswerOf(portId) : std::string();
    const std::string detail = answer.empty() ? std::string() : ": " + answer;
    if (Contains(enumeration.ArgumentsOf(log_texts::kPortError), portId))
        return {portId, "the port can't be used" + detail, "Close the program that uses the port."};
    return {portId, "no camera answers" + detail, "Is the camera on and its cable plugged in?"};
}

}  // namespace

bool Enumeration::Logged(std::string_view format) const {
    return std::any_of(log.begin(), log.end(), [&](const LogMessage& message) { return message.format == format; });
}

std::vector<std::string> Enumeration::ArgumentsOf(std::string_view format) const {
    std::vector<std::string> result;
    for (const LogMessage& message : log)
        if (message.format == format && !message.arguments.empty() && !Contains(result, message.arguments.front()))
            result.push_back(message.arguments.front());
    return result;
}

std::vector<LogMessage> Enumeration::Problems() const {
    std::vector<LogMessage> problems;
    std::copy_if(log.begin(), log.end(), std::back_inserter(problems),
                 [](const LogMessage& message) { return message.level >= Vanto::tracelog::kWarning; });
    return problems;
}

std::vector<SilentPort> Enumeration::SilentPorts(bool askAgain) const {
    std::vector<SilentPort> silent;
    for (const std::string& portId : ArgumentsOf(log_texts::kUsablePort)) {
        const bool found = std::any_of(cameras.begin(), cameras.end(), [&](const Vanto::CDeviceInfo& camera) {
            return PropertyOf(camera, "PortID") == portId;
        });
        if (!found)
            silent.push_back(Explain(*this, portId, askAgain));
    }
    return silent;
}

/**
 * \brief Look for cameras on all enabled ports
 *
 * Never throws for what goes wrong during the look: the log says it.
 *
 * \param[in] layer May hold no transport layer; then nothing is found
 */
Enumeration Enumerate(const TransportLayer& layer) {
    Enumeration enumeration;
    if (layer.Get() == nullptr)
        return enumeration;
    const Vanto::tracelog::LogRecorder recorder("*:debug");
    layer.Get()->EnumerateDevices(enumeration.cameras);
    enumeration.log = recorder.GetMessages();
    return enumeration;
}

std::string PropertyOf(const Vanto::IProperties& record, const char* name) {
    GenICam::gcstring value;
    return record.GetPropertyValue(name, value) ? value.str() : std::string();
}

}  // namespace tools
