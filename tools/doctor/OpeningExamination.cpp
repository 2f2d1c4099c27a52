/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The doctor's look at cameras that are open
 */
#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "cameras/Records.h"
#include "doctor/Examinations.h"
#include "error/ExitCode.h"
#include "features/BaudRateFeature.h"
#include "features/OpenDevice.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

/// The highest rate that camera, port and line really carry; nothing when all but the present one fail.
std::optional<BaudRate> HighestThatWorks(BaudRateFeature& feature, const OpenDevice& device, Output& output) {
    std::vector<BaudRate> rates = feature.Offered();
    std::ranges::reverse(rates);
    for (const BaudRate& rate : rates) {
        ThrowIfInterrupted();
        const Progress progress(output, fmt::format("Trying {} baud with {}", rate.bitsPerSecond, device.Name()));
        try {
            feature.Set(rate);
            return rate;
        } catch (const GenICam::GenericException&) {
            device.ThrowIfGone();
        }
    }
    return std::nullopt;
}

Observation RateThatWorks(const OpenDevice& device, const std::string& portId, Output& output) {
    BaudRateFeature feature(device.Nodes(), device.Name());
    const std::optional<BaudRate> rate = HighestThatWorks(feature, device, output);
    const std::string entry = rate ? feature.EntryName(*rate).value_or("") : std::string();
    return {Health::kWarning, portId,
            fmt::format("{} does not take its baud rate: {}", device.Name(), *device.RateRefusal()),
            entry.empty()
                ? "Leave BaudRate out of the port configuration file."
                : fmt::format("Write <BaudRate>{}</BaudRate> for {} into the port configuration file.", entry, portId)};
}

Section ExamineCamera(const TransportLayer& layer, const Vanto::CDeviceInfo& camera, Output& output) {
    const std::string portId = PropertyOf(camera, "PortID");
    const OpenDevice device(layer, camera, output, OpenDevice::Use::kExamine);
    Section section;
    section.observations.push_back({Health::kFine, portId, device.Name() + " can be opened", {}});
    if (const std::optional<std::string> stranded = device.Stranded())
        section.observations.push_back({Health::kWarning, portId, *stranded, {}});
    if (device.RateRefusal())
        section.observations.push_back(RateThatWorks(device, portId, output));
    return section;
}

Observation CantBeOpened(const Vanto::CDeviceInfo& camera, const char* reason, const std::string& advice) {
    ThrowIfInterrupted();  // who ended it knows why it failed
    return {Health::kBad, PropertyOf(camera, "PortID"),
            fmt::format("{} can't be opened: {}", PropertyOf(camera, "FriendlyName"), reason), advice};
}

}  // namespace

Section ExamineOpening(const TransportLayer& layer, const Enumeration& enumeration, Output& output) {
    Section section{"Opening the cameras", {}};
    for (const Vanto::CDeviceInfo& camera : enumeration.cameras) {
        try {
            for (Observation& observation : ExamineCamera(layer, camera, output).observations)
                section.observations.push_back(std::move(observation));
        } catch (const ToolError& failure) {
            section.observations.push_back(CantBeOpened(camera, failure.what(), failure.Hint()));
        } catch (const std::exception& failure) {
            section.observations.push_back(CantBeOpened(camera, failure.what(), {}));
        }
    }
    if (section.observations.empty())
        section.observations.push_back({Health::kRemark, "none", "no camera was found that could be opened", {}});
    return section;
}

}  // namespace tools
