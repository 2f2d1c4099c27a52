/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Why no camera was found on a port, and what to do about it
 */
#pragma once

#include <optional>
#include <string>

#include "cameras/PortWatch.h"

namespace tools {

/// What keeps the camera of a port from being found.
enum class PortState {
    kInUse,          ///< another program has the port
    kNoAccess,       ///< this user may not use it
    kNoAnswer,       ///< nobody answers
    kNonsense,       ///< somebody answers, but no camera of this protocol
    kForeignCamera,  ///< a camera of another maker, or not the one that is looked for
    kNewerProtocol,  ///< a camera that speaks a newer GenCP
    kNotOpened,      ///< the serial library can't open it
    kNoDriver,       ///< nothing was sent: there is no driver for the camera that is looked for
    kBroken,         ///< anything else that failed
    kNotAsked        ///< nobody has looked
};

/// A sentence without its end, and the next step.
struct PortAdvice {
    PortState state = PortState::kNotAsked;
    std::string reason;
    std::string hint;
};

/// \param[in] news What was heard of the port last; of one where no camera of ours answered
PortAdvice AdviceOn(const std::string& portId, const std::optional<PortNews>& news);

}  // namespace tools
