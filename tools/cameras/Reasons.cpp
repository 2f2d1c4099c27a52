/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why no camera was found, and what to do about it
 */
#include "cameras/Reasons.h"

#include <fmt/format.h>

#include "CLProtocol/Diagnostics.h"
#include "cameras/LogTexts.h"
#include "configuration/ConfigurationChecker.h"
#include "configuration/ConfigurationPath.h"
#include "configuration/ConfigurationReader.h"
#include "error/ExitCode.h"
#include "output/Text.h"
#include "system/Environment.h"
#include "vanto/VantoFolders.h"

namespace tools {

namespace {

constexpr const char* kAskDoctor = "'vanto-cl doctor' shows every library that was looked at.";

std::string Path(const std::filesystem::path& path) {
    return Printable(path.string());
}

Reason MissingLayer() {
    const std::string folder = Vanto::getVantoFolderPath(Vanto::eTransportLayerFolder).str();
    std::string cause = fmt::format("The transport layer for Camera Link is missing: '{}' holds none.", folder);
    for (const Vanto::RejectedTl& rejected : Vanto::CTlFactory::GetInstance().GetRejectedTls())
        cause += fmt::format(" '{}' was refused: {}.", rejected.path.str(), rejected.reason.str());
    return {cause, "Install VantoCLSer.so there, or set VANTO_ROOT to the root of an installation."};
}

std::vector<Reason> UnreadableConfiguration(const std::filesystem::path& path, const std::string& message) {
    return {{fmt::format("The port configuration file can't be used: {}", Printable(message)),
             fmt::format("Mend '{}'; 'vanto-cl config check' says what is wrong with it.", Path(path))}};
}

std::vector<Reason> NothingUsable(const std::filesystem::path& path) {
    const std::vector<std::string> ports = MachinePorts();
    std::error_code error;
    if (!std::filesystem::exists(path, error))
        return {{fmt::format("There is no port configuration file '{}'.", Path(path)),
                 "'vanto-cl config init' writes one for the ports of this machine."}};
    PortConfiguration configuration;
    try {
        configuration = ReadPortConfiguration(path);
    } catch (const ToolError& failure) {
        return UnreadableConfiguration(path, failure.what());
    }
    if (!configuration.EnablesAny())
        return {{fmt::format("No port is enabled in '{}'.", Path(path)),
                 "Set <Enabled>true</Enabled> for the camera's port; 'vanto-cl ports' lists the ports, "
                 "'vanto-cl config check' explains the file."}};
    if (ports.empty())
        return {{"This machine has no serial port that a serial library offers.",
                 std::string("Plug in the frame grabber or the adapter. ") + kAskDoctor}};
    std::string enabled;
    for (const PortEntry& entry : configuration.entries)
        if (entry.IsEnabled() && !entry.id.text.empty())
            enabled += fmt::format("{}'{}'", enabled.empty() ? "" : ", ", Printable(entry.id.text));
    return {{fmt::format("None of the enabled ports is there: '{}' enables {}.", Path(path), enabled),
             "'vanto-cl ports' lists the ports of this machine, 'vanto-cl config check' compares."}};
}

Reason NoDriver() {
    std::string cause = "There is no CLProtocol driver for cameras of Marlow.";
    for (const CLProtocol::LibraryReport& driver : CLProtocol::GetDrivers())
        if (!driver.refusal.empty())
            cause +=
                fmt::format(" '{}' was refused: {}.", Printable(driver.path.view()), Printable(driver.refusal.view()));
    return {cause, fmt::format("Install the driver, or name its folder in GENICAM_CLPROTOCOL. {}", kAskDoctor)};
}

/// With its end; reasons that a library gives have theirs.
std::string Sentence(const std::string& reason) {
    const std::string text = Printable(reason);
    return text.ends_with('.') || text.ends_with('?') ? text : text + ".";
}

std::string ArgumentOfFailure(const Enumeration& enumeration) {
    for (const auto& message : enumeration.log)
        if (message.format == log_texts::kEnumerationFailed && message.arguments.size() >= 2)
            return message.arguments[1];
    return {};
}

}  // namespace

/**
 * \brief Say why a look for cameras found none
 * \param[in] layer The transport layer that looked
 * \param[in] enumeration What it found and logged
 * \return At least one reason when the enumeration holds no camera, most important first
 */
std::vector<Reason> WhyNoCamera(const TransportLayer& layer, const Enumeration& enumeration) {
    if (layer.Get() == nullptr)
        return {MissingLayer()};
    const std::string restriction = GetEnvironment("VANTO_USE_TL").value_or("");
    if (!restriction.empty() && restriction != kDeviceClass)
        return {
            {fmt::format("VANTO_USE_TL restricts this process to the transport layer '{}'.", Printable(restriction)),
             fmt::format("Unset VANTO_USE_TL, or set it to exactly {}.", kDeviceClass)}};
    const std::filesystem::path path = FindConfigurationPath().path;
    if (enumeration.Logged(log_texts::kEnumerationFailed))
        return UnreadableConfiguration(path, ArgumentOfFailure(enumeration));
    if (enumeration.Logged(log_texts::kNoUsablePort))
        return NothingUsable(path);
    if (enumeration.Logged(log_texts::kNoTemplates))
        return {NoDriver()};
    std::vector<Reason> reasons;
    for (const SilentPort& port : enumeration.silentPorts)
        reasons.push_back(
            {fmt::format("Port '{}': {}", Printable(port.portId), Sentence(port.advice.reason)), port.advice.hint});
    if (reasons.empty())
        reasons.push_back({"The transport layer found no camera and did not say why.", kAskDoctor});
    return reasons;
}

}  // namespace tools
