/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The doctor's look at serial ports and their configuration
 */
#include <fmt/format.h>

#include <algorithm>

#include "configuration/ConfigurationChecker.h"
#include "configuration/ConfigurationPath.h"
#include "configuration/ConfigurationReader.h"
#include "doctor/Examinations.h"
#include "error/ExitCode.h"
#include "system/FileAccess.h"

namespace tools {

namespace {

Observation ObserveDevice(const std::string& name, const std::filesystem::path& device) {
    const FileAccess access = AccessTo(device);
    const std::string rights = fmt::format("{} {} {}:{}", device.string(), access.mode, access.owner, access.group);
    if (!access.exists)
        return {Health::kWarning, name, device.string() + " is gone", {}};
    if (access.readable && access.writable)
        return {Health::kFine, name, rights, {}};
    return {Health::kBad, name, fmt::format("{}: user {} may not use it", rights, UserName()),
            AdviceOnAccess(device, access)};
}

}  // namespace

Section ExaminePorts() {
    Section section{"Serial ports", {}};
    std::vector<std::filesystem::path> devices = SerialDevices();
    for (const std::string& port : MachinePorts()) {
        const std::filesystem::path device = DeviceOfPort(port);
        if (device.empty())
            section.observations.push_back({Health::kFine, port, "offered by a serial library", {}});
        else
            section.observations.push_back(ObserveDevice(port, device));
        std::erase(devices, device);
    }
    for (const std::filesystem::path& device : devices) {
        Observation observation = ObserveDevice(device.string(), device);
        observation.state += "; no serial library offers it";
        if (observation.health == Health::kFine)
            observation.health = Health::kRemark;
        section.observations.push_back(observation);
    }
    if (section.observations.empty())
        section.observations.push_back(
            {Health::kBad, "none", "this machine has no serial port", "Plug in the frame grabber or the adapter."});
    return section;
}

Section ExamineConfiguration() {
    Section section{"Port configuration file", {}};
    const ConfigurationPath place = FindConfigurationPath();
    std::error_code error;
    section.observations.push_back({place.warning.empty() ? Health::kRemark : Health::kWarning, "Looked for at",
                                    fmt::format("{}: {}", place.path.string(), place.reason), place.warning});
    if (!std::filesystem::exists(place.path, error)) {
        section.observations.push_back({Health::kBad, "File", "does not exist",
                                        "'vanto-cl config init' writes one for the ports of this machine."});
        return section;
    }
    try {
        PortConfiguration configuration = ReadPortConfiguration(place.path);
        CheckPortConfiguration(configuration, MachinePorts());
        const auto enabled = std::count_if(configuration.entries.begin(), configuration.entries.end(),
                                           [](const PortEntry& entry) { return entry.IsEnabled(); });
        section.observations.push_back({configuration.findings.HasErrors() ? Health::kBad : Health::kFine,
                                        "File",
                                        fmt::format("{} Port element{}, {} enabled", configuration.entries.size(),
                                                    configuration.entries.size() == 1 ? "" : "s", enabled),
                                        {}});
        for (const Finding& finding : configuration.findings)
            section.observations.push_back(
                {finding.severity == Severity::kError ? Health::kBad : Health::kWarning,
                 finding.place.line > 0 ? fmt::format("Line {}, column {}", finding.place.line, finding.place.column)
                                        : "Whole file",
                 finding.text, finding.hint});
    } catch (const ToolError& failure) {
        section.observations.push_back({Health::kBad, "File", failure.what(), failure.Hint()});
    }
    return section;
}

}  // namespace tools
