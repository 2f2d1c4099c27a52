/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which camera a user means
 */
#include "cameras/DeviceChoice.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/Number.h"
#include "cameras/Records.h"
#include "error/ExitCode.h"
#include "output/Text.h"

namespace tools {

namespace {

constexpr const char* kNames[] = {"SerialNumber", "FriendlyName", "FullName", "PortID"};

bool IsCalled(const KnownCamera& camera, const std::string& device) {
    const Vanto::CDeviceInfo record = RecordOf(camera.address);
    return NumberFrom(device) == camera.number || std::ranges::any_of(kNames, [&](const char* name) {
               const std::string value = PropertyOf(record, name);
               return !value.empty() && value == device;
           });
}

}  // namespace

std::optional<std::size_t> NumberFrom(const std::string& device) {
    return base::ParseNumber<std::size_t>(device);
}

std::optional<KnownCamera> ChooseDevice(const std::vector<KnownCamera>& cameras, const std::string& device) {
    std::vector<KnownCamera> matches;
    std::ranges::copy_if(cameras, std::back_inserter(matches),
                         [&](const KnownCamera& camera) { return IsCalled(camera, device); });
    if (matches.size() > 1)
        throw ToolError(
            fmt::format("'{}' names {} cameras; give the number or the port of one:", device, matches.size()),
            Candidates(matches), ExitCode::kUsage);
    return matches.empty() ? std::nullopt : std::optional(matches.front());
}

std::string Candidates(const std::vector<KnownCamera>& cameras) {
    std::string text;
    for (const KnownCamera& camera : cameras)
        text += fmt::format("{}  {}  {}  {}", text.empty() ? "" : "\n", camera.number, NameOf(RecordOf(camera.address)),
                            Printable(camera.address.portId));
    return text;
}

}  // namespace tools
