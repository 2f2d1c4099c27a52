/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One look for cameras, and what was logged meanwhile
 */
#include "cameras/Enumeration.h"

#include <fmt/format.h>

#include <algorithm>

#include "cameras/KnownCamerasFile.h"
#include "cameras/LogTexts.h"
#include "cameras/Records.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Clock.h"

namespace tools {

namespace {

using Vanto::tracelog::LogMessage;

bool Contains(const std::vector<std::string>& texts, const std::string& text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

/// The ports that were to be asked and gave no camera.
std::vector<SilentPort> SilentPortsOf(const Enumeration& enumeration, const PortWatch& ports) {
    std::vector<SilentPort> silent;
    for (const std::string& portId : enumeration.ArgumentsOf(log_texts::kUsablePort)) {
        const bool found = std::ranges::any_of(enumeration.cameras, [&](const Vanto::CDeviceInfo& camera) {
            return PropertyOf(camera, "PortID") == portId;
        });
        if (!found)
            silent.push_back({portId, AdviceOn(portId, ports.Of(portId))});
    }
    return silent;
}

/// Shows the ports one after the other while they are asked.
class Looking {
public:
    Looking(PortWatch& ports, const Vanto::tracelog::LogRecorder& log, Output& output)
        : m_ports(ports), m_log(log), m_progress(output, "Looking for cameras") {
        m_ports.Listen([this](const PortNews& news) { Show(news); });
    }
    ~Looking() { m_ports.Listen({}); }
    Looking(const Looking&) = delete;
    Looking& operator=(const Looking&) = delete;

private:
    void Show(const PortNews& news) {
        m_asked.insert(news.portId);
        const std::size_t all = m_log.CountFormat(log_texts::kUsablePort);
        m_progress.Say(fmt::format("Looking for cameras: {}, port {} of {}", Printable(news.portId), m_asked.size(),
                                   std::max(all, m_asked.size())));
        m_progress.SetPart(m_asked.size() - 1, all);
    }

    PortWatch& m_ports;
    const Vanto::tracelog::LogRecorder& m_log;
    std::set<std::string> m_asked;
    Progress m_progress;
};

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

std::set<std::string> Enumeration::PortsInUse() const {
    std::set<std::string> ports;
    for (const SilentPort& port : silentPorts)
        if (port.advice.state == PortState::kInUse)
            ports.insert(port.portId);
    return ports;
}

std::vector<CameraAddress> Enumeration::Addresses() const {
    std::vector<CameraAddress> addresses;
    for (const Vanto::CDeviceInfo& camera : cameras)
        addresses.push_back(AddressOf(camera));
    return addresses;
}

std::vector<KnownCamera> Enumeration::Numbered(const KnownCameras& known) const {
    std::vector<KnownCamera> numbered;
    for (const CameraAddress& address : Addresses())
        if (const KnownCamera* const camera = known.At(address))
            numbered.push_back(*camera);
    std::ranges::sort(numbered, {}, &KnownCamera::number);
    return numbered;
}

/**
 * \brief Look for cameras on all enabled ports
 *
 * Never throws for what goes wrong during the look: the log says it.
 *
 * \param[in] layer May hold no transport layer; then nothing is found
 */
Enumeration Enumerate(const TransportLayer& layer, Output& output) {
    Enumeration enumeration;
    if (layer.Get() == nullptr)
        return enumeration;
    const Vanto::tracelog::LogRecorder recorder("*:debug");
    {
        const Looking looking(layer.Ports(), recorder, output);
        layer.Get()->EnumerateDevices(enumeration.cameras);
    }
    enumeration.log = recorder.GetMessages();
    enumeration.silentPorts = SilentPortsOf(enumeration, layer.Ports());
    return enumeration;
}

Enumeration EnumerateAndRemember(const TransportLayer& layer, Output& output) {
    Enumeration enumeration = Enumerate(layer, output);
    if (!enumeration.cameras.empty())
        ChangeKnownCameras(output, [&](KnownCameras& known) {
            known.Remember(enumeration.Addresses(), enumeration.PortsInUse(), Now());
        });
    return enumeration;
}

}  // namespace tools
