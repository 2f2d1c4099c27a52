/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which camera of the list a user means
 */
#include "cameras/DeviceChoice.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>

#include "cameras/Reasons.h"
#include "error/ExitCode.h"
#include "output/Text.h"

namespace tools {

namespace {

constexpr const char* kNames[] = {"SerialNumber", "FriendlyName", "FullName", "PortID"};

std::optional<std::size_t> AsIndex(const std::string& text) {
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(index) : std::nullopt;
}

bool IsCalled(const Vanto::CDeviceInfo& camera, const std::string& device) {
    return std::any_of(std::begin(kNames), std::end(kNames), [&](const char* name) {
        const std::string value = PropertyOf(camera, name);
        return !value.empty() && value == device;
    });
}

std::string Candidates(const Vanto::DeviceInfoList& cameras, const std::vector<std::size_t>& indices) {
    std::string text;
    for (const std::size_t index : indices)
        text += fmt::format("{}  {}  {}  {}", text.empty() ? "" : "\n", index,
                            PropertyOf(cameras[index], "FriendlyName"), PropertyOf(cameras[index], "FullName"));
    return text;
}

}  // namespace

/**
 * \brief The camera that a DEVICE argument names
 * \param[in] cameras The list; the result refers into it
 * \param[in] device Index from 0, serial number, friendly name, full name or PortID; names are compared exactly
 * \throw ToolError No camera is called so (kNoDevice), or several are (kUsage); the hint lists candidates
 */
const Vanto::CDeviceInfo& ChooseDevice(const Vanto::DeviceInfoList& cameras, const std::string& device) {
    std::vector<std::size_t> matches;
    for (std::size_t index = 0; index < cameras.size(); ++index)
        if (IsCalled(cameras[index], device) || AsIndex(device) == index)
            matches.push_back(index);
    if (matches.size() == 1)
        return cameras[matches.front()];
    if (matches.size() > 1)
        throw ToolError(fmt::format("'{}' names {} cameras; give the full name of one:", device, matches.size()),
                        Candidates(cameras, matches), ExitCode::kUsage);
    std::vector<std::size_t> all(cameras.size());
    for (std::size_t index = 0; index < all.size(); ++index)
        all[index] = index;
    throw ToolError(fmt::format("there is no camera '{}'; the cameras are:", device), Candidates(cameras, all),
                    ExitCode::kNoDevice);
}

/**
 * \brief Look for cameras and take the one that a DEVICE argument names
 * \throw ToolError As ChooseDevice; where no camera was found at all, the hint says why
 */
Vanto::CDeviceInfo FindDevice(const TransportLayer& layer, const std::string& device) {
    const Enumeration enumeration = Enumerate(layer);
    if (!enumeration.cameras.empty())
        return ChooseDevice(enumeration.cameras, device);
    std::string hint;
    for (const Reason& reason : WhyNoCamera(layer, enumeration, enumeration.SilentPorts(true)))
        hint += fmt::format("{}{}{}{}", hint.empty() ? "" : "\n", reason.cause, reason.remedy.empty() ? "" : "\n  ",
                            reason.remedy);
    throw ToolError(fmt::format("there is no camera '{}': no camera was found", device), hint, ExitCode::kNoDevice);
}

}  // namespace tools
