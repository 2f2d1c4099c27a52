/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The doctor's look for cameras, and the verdict
 */
#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "cameras/Records.h"
#include "doctor/Examinations.h"
#include "output/Progress.h"
#include "system/Interruptible.h"
#include "vanto/LogRules.h"

namespace tools {

namespace {

constexpr std::size_t kLastMessages = 20;

/// A section that can't be had is itself something to report: the doctor is for broken systems.
template <class Examination>
Section Guarded(const char* title, Examination examination) {
    try {
        return examination();
    } catch (const std::exception& failure) {
        return {title, {{Health::kBad, "Examination", failure.what(), {}}}};
    }
}

void Judge(Report& report, const TransportLayer& layer, const Enumeration& enumeration) {
    const std::size_t silent = enumeration.silentPorts.size();
    if (enumeration.cameras.empty()) {
        const std::vector<Reason> reasons = WhyNoCamera(layer, enumeration);
        report.verdict = "no camera was found. " + reasons.front().cause;
        report.nextStep = reasons.front().remedy;
        return;
    }
    report.healthy = silent == 0;
    report.verdict = fmt::format("{} {} found", enumeration.cameras.size(),
                                 enumeration.cameras.size() == 1 ? "camera was" : "cameras were");
    report.verdict += silent == 0
                          ? "; nothing keeps you from using them."
                          : fmt::format(", but {} enabled {} silent.", silent, silent == 1 ? "port is" : "ports are");
    report.nextStep = silent == 0 ? "'vanto-cl xml 0' fetches the first one's description."
                                  : "See 'Cameras' above; disable ports without a camera in the configuration.";
}

}  // namespace

Section ExamineCameras(const Enumeration& enumeration) {
    Section section{"Cameras", {}};
    for (const Vanto::CDeviceInfo& camera : enumeration.cameras)
        section.observations.push_back(
            {Health::kFine, PropertyOf(camera, "PortID"), PropertyOf(camera, "FriendlyName"), {}});
    for (const SilentPort& port : enumeration.silentPorts)
        section.observations.push_back({Health::kBad, port.portId, port.advice.reason, port.advice.hint});
    if (section.observations.empty())
        section.observations.push_back({Health::kBad, "none", "no port was asked for a camera", {}});
    return section;
}

Section ExamineLog(const Enumeration& enumeration) {
    Section section{"Last warnings and errors", {}};
    const std::vector<Vanto::tracelog::LogMessage> problems = enumeration.Problems();
    const std::size_t first = problems.size() - std::min(problems.size(), kLastMessages);
    for (std::size_t index = first; index < problems.size(); ++index)
        section.observations.push_back(
            {problems[index].level >= Vanto::tracelog::kError ? Health::kBad : Health::kWarning,
             problems[index].category,
             problems[index].text,
             {}});
    if (section.observations.empty())
        section.observations.push_back({Health::kFine, "none", "nothing was complained about", {}});
    return section;
}

/// Looks at everything, then for cameras. Nothing that is broken keeps the rest from being looked at.
Report Examine(Output& output) {
    const Interruption::Watch watch;
    Report report;
    std::optional<Progress> progress(std::in_place, output, "Examining");
    const TransportLayer layer;
    report.sections.push_back(Guarded("Environment variables", ExamineEnvironment));
    report.sections.push_back(Guarded("Folders", ExamineFolders));
    report.sections.push_back(Guarded("Transport layers", [&] { return ExamineTransportLayers(layer); }));
    report.sections.push_back(Guarded("Camera Link serial libraries", ExamineSerialLibraries));
    report.sections.push_back(Guarded("CLProtocol drivers", ExamineDrivers));
    report.sections.push_back(Guarded("Serial ports", ExaminePorts));
    report.sections.push_back(Guarded("Port configuration file", ExamineConfiguration));
    progress.reset();
    const Enumeration enumeration = EnumerateAndRemember(layer, output);
    ThrowIfInterrupted();
    report.sections.push_back(Guarded("Cameras", [&] { return ExamineCameras(enumeration); }));
    report.sections.push_back(
        Guarded("Opening the cameras", [&] { return ExamineOpening(layer, enumeration, output); }));
    report.sections.push_back(Guarded("GenTL producer", ExamineProducer));
    report.sections.push_back(Guarded("Last warnings and errors", [&] { return ExamineLog(enumeration); }));
    Judge(report, layer, enumeration);
    return report;
}

}  // namespace tools
