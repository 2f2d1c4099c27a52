/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tells the host what the module does, and whether the host wants it to end
 */
#pragma once

#include <functional>

#include "CLProtocol/Activity.h"

namespace CLProtocol {

bool IsActivityHeard() noexcept;
void Tell(const Activity& activity);

bool IsStopRequested() noexcept;
/// Throws CLErrException -10004 when the host has asked for an end.
void ThrowIfStopped(const GenICam::gcstring& portId);

/// What a look for a camera found.
struct LookResult {
    GenICam::gcstring deviceId;
    std::uint32_t rateFlag = 0;
};

/// Tells of a look for a camera: that it begins, how it ends, and why where it fails.
GenICam::gcstring TellLook(const GenICam::gcstring& portId, const GenICam::gcstring& deviceId,
                           const std::function<LookResult()>& look);

}  // namespace CLProtocol
