/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why a camera's description can't be had, in the words of those who know
 */
#include "cameras/DescriptionTrouble.h"

#include <fmt/format.h>

#include "Base/GCException.h"
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

}  // namespace

void ReadDescription(const std::string& camera, const std::function<void()>& action) {
    const Vanto::tracelog::LogRecorder log(log_texts::kLayerErrors);
    try {
        action();
    } catch (const GenICam::GenericException&) {
        ThrowIfInterrupted();  // who ended it knows why it failed
        const std::string reason = LoggedReason(log);
        if (reason.empty())
            throw;
        throw ToolError(fmt::format("the description of {} can't be had: {}", camera, reason),
                        "A description from a file can take its place, if the camera's maker has one.");
    }
}

}  // namespace tools
