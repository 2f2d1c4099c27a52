/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why no camera was found on a port, and what to do about it
 */
#include "cameras/PortAdvice.h"

#include <fmt/format.h>

#include <string_view>

#include "CLProtocol/DriverCodes.h"
#include "cameras/PortUser.h"
#include "cameras/Records.h"
#include "clser/ClSerial.h"
#include "system/FileAccess.h"

namespace tools {

namespace {

// What our own driver says; another one's words are passed on as they are.
constexpr std::string_view kReceived = "Something was received.";
constexpr std::string_view kProtocol = "but its GenCP version is";
constexpr std::string_view kAnswers = " answers at ";

bool Says(const PortNews& news, std::string_view text) {
    return news.reason.find(text) != std::string::npos;
}

/// The words of the driver or library, without whose function it was: the log has that.
std::string Told(const PortNews& news) {
    constexpr std::string_view kFailed = " failed: ";
    const std::size_t begin = news.reason.rfind(kFailed);
    return begin == std::string::npos ? news.reason : news.reason.substr(begin + kFailed.size());
}

PortAdvice Refused(const std::filesystem::path& device, const FileAccess& access) {
    return {PortState::kNoAccess, fmt::format("user {} may not use {}", UserName(), device.string()),
            AdviceOnAccess(device, access)};
}

PortAdvice NoDriver() {
    return {PortState::kNoDriver, "nothing was sent: there is no CLProtocol driver for cameras of Marlow",
            "Install the driver, or name its folder in GENICAM_CLPROTOCOL."};
}

PortAdvice OtherDevice(const PortNews& news) {
    if (Says(news, kProtocol))
        return {PortState::kNewerProtocol, "a camera answers that speaks another GenCP: " + Told(news),
                "Install the CLProtocol driver that its maker has for it."};
    if (Says(news, kAnswers))
        return {PortState::kForeignCamera, "a camera of another maker answers: " + Told(news),
                "Use its maker's CLProtocol driver and software; only cameras of Marlow are looked for here."};
    return {PortState::kForeignCamera, "no camera of Marlow is there: " + Told(news), {}};
}

PortAdvice Silent(const PortNews& news) {
    if (Says(news, kReceived))
        return {
            PortState::kNonsense, "something answers, but not as a camera does: " + Told(news),
            "Is there something else behind the port? Else look at cable and connector: a camera with a bad line is "
            "heard, too."};
    return {PortState::kNoAnswer, "no camera answers: " + Told(news), "Is the camera on and its cable plugged in?"};
}

}  // namespace

PortAdvice AdviceOn(const std::string& portId, const std::optional<PortNews>& news) {
    const std::filesystem::path device = DeviceOfPort(portId);
    const FileAccess access = device.empty() ? FileAccess() : AccessTo(device);
    if (access.exists && (!access.readable || !access.writable))
        return Refused(device, access);
    if (!news && UsableTemplates().empty())
        return NoDriver();
    if (!news || !news->hasEnded)
        return {PortState::kNotAsked, "it was not asked", {}};
    if (!news->hasFailed)
        return {PortState::kForeignCamera, "what answers is no camera of Marlow", {}};
    if (news->IsInUse())
        return {PortState::kInUse, "in use by " + UserOf(*news).Text(),
                UserOf(*news).pid != 0 ? "Close that program, or wait until it ends."
                                       : "Close the program that uses the port."};
    if (news->IsNoAnswer())
        return Silent(*news);
    if (news->errorCode == CLProtocol::CLP_NO_DEVICE_FOUND)
        return OtherDevice(*news);
    if (news->errorCode == CLProtocol::CLP_DRIVER_BAD_ACKNOWLEDGE)
        return {PortState::kNonsense, "what answers does not speak as a camera does: " + Told(*news),
                "Is there something else behind the port? Else switch the camera off and on."};
    if (news->errorCode == CL_ERR_INVALID_INDEX || news->errorCode == CL_ERR_INVALID_REFERENCE)
        return {PortState::kNotOpened, "its serial library can't open the port: " + Told(*news),
                "Is the frame grabber or the adapter still plugged in? 'vanto-cl doctor' shows the libraries."};
    return {PortState::kBroken, "the port can't be used: " + Told(*news),
            "'vanto-cl doctor' shows libraries and drivers."};
}

}  // namespace tools
