/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The file in which the known cameras lie from one run to the next
 */
#pragma once

#include <functional>

#include "cameras/KnownCameras.h"

namespace tools {

class Output;

/// Reads the cameras that this user was shown; none where there is no file. One that is damaged is ignored, with a
/// warning.
KnownCameras LoadKnownCameras(Output& output);

/// Changes what is known, so that no other process's change gets lost, and returns it. What can't be written is only
/// warned of.
KnownCameras ChangeKnownCameras(Output& output, const std::function<void(KnownCameras&)>& change);

}  // namespace tools
