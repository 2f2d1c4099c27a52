/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why a camera's description can't be had, in the words of those who know
 */
#include "cameras/DescriptionTrouble.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "cameras/LogTexts.h"
#include "error/ExitCode.h"
#include "system/Interruptible.h"
#include "vanto/LogListener.h"

namespace tools {

namespace {

/// Empty when the log does not tell of a description.
std::string LoggedReason(const Vanto::tracelog::LogRecorder& log) {
    std::string reason;
    for (const auto& message : log.GetMessages())
        if (message.format.starts_with(log_texts::kNoDescription) && !message.arguments.empty())
            reason = message.arguments.front();
    return reason;
}

/// What is wrong with a description, known by a part of what the libraries say of it.
struct Trouble {
    std::string_view mark;
    const char* cause;
    const char* remedy;
};

constexpr const char* kFileInstead =
    "A file from the camera's maker can take its place: VANTO_XML_BINDINGS names a file that binds it.";
constexpr const char* kFetchAgain =
    "Switch the camera off and on and try again. If it stays so, its firmware was not loaded as a whole: load it "
    "again, or bind a file in its place with VANTO_XML_BINDINGS.";

constexpr std::array kTroubles{
    Trouble{"size 0", "the camera says that it has size 0", kFileInstead},
    Trouble{"(-20102)", "the camera holds none", kFileInstead},
    Trouble{"(-30211)", "it arrives with another SHA-1 than the camera says", kFetchAgain},
    Trouble{"Could not unpack", "its ZIP file is damaged", kFetchAgain},
};

ToolError ErrorFor(const std::string& camera, const std::string& reason) {
    const auto* const trouble =
        std::ranges::find_if(kTroubles, [&](const Trouble& one) { return reason.find(one.mark) != std::string::npos; });
    const std::string begin = fmt::format("the description of {} can't be had: ", camera);
    if (trouble == kTroubles.end())
        return ToolError(begin + reason, kFileInstead);
    return ToolError(fmt::format("{}{}. {}", begin, trouble->cause, reason), trouble->remedy);
}

}  // namespace

void ReadDescription(const std::string& camera, const std::function<void()>& action) {
    const Vanto::tracelog::LogRecorder log(log_texts::kLayerErrors);
    try {
        action();
    } catch (const std::exception&) {
        ThrowIfInterrupted();  // who ended it knows why it failed
        const std::string reason = LoggedReason(log);
        if (reason.empty())
            throw;
        throw ErrorFor(camera, reason);
    }
}

}  // namespace tools
