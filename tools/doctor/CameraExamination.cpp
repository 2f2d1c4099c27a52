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

std::string Counted(std::size_t count, const char* one, const char* several) {
    return fmt::format("{} {}", count, count == 1 ? one : several);
}

std::size_t BadOnes(const Section& section) {
    return static_cast<std::size_t>(std::ranges::count(section.observations, Health::kBad, &Observation::health));
}

/// \param[in] opening What ExamineOpening has found
void Judge(Report& report, const TransportLayer& layer, const Enumeration& enumeration, const Section& opening) {
    if (enumeration.cameras.empty()) {
        const std::vector<Reason> reasons = WhyNoCamera(layer, enumeration);
        report.verdict = "no camera was found. " + reasons.front().cause;
        report.nextStep = reasons.front().remedy;
        return;
    }
    const std::size_t lacking = enumeration.silentPorts.size();
    const std::size_t unusable = BadOnes(opening);
    report.healthy = lacking == 0 && unusable == 0;
    report.verdict = Counted(enumeration.cameras.size(), "camera was found", "cameras were found");
    if (unusable != 0)
        report.verdict += fmt::format(", but {} can't be opened", unusable);
    if (lacking != 0)
        report.verdict += (unusable != 0 ? ", and " : ", but ") +
                          Counted(lacking, "enabled port has none", "enabled ports have none");
    if (report.healthy) {
        report.verdict += "; nothing keeps you from using them.";
        report.nextStep = "'vanto-cl xml 0' fetches the first one's description.";
        return;
    }
    report.verdict += '.';
    report.nextStep = unusable != 0 ? fmt::format("See '{}' above.", opening.title)
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
    const Section opening = Guarded("Opening the cameras", [&] { return ExamineOpening(layer, enumeration, output); });
    report.sections.push_back(opening);
    report.sections.push_back(Guarded("GenTL producer", ExamineProducer));
    report.sections.push_back(Guarded("Last warnings and errors", [&] { return ExamineLog(enumeration); }));
    Judge(report, layer, enumeration, opening);
    return report;
}

}  // namespace tools
