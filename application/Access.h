/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Accesses to a camera, whose refusals become sentences for people
 */
#pragma once

#include <utility>

#include "Base/GCException.h"
#include "CameraState.h"
#include "GenApi/INode.h"

namespace Vanto {

[[noreturn]] void RethrowForPeople(const CameraState& camera, GenApi::INode* node);

/// Runs what uses an open camera, about a feature where \a node is not null. A GenICam exception becomes one of ours.
template <class Action>
decltype(auto) Access(const CameraState& camera, GenApi::INode* node, Action&& action) {
    camera.RequireOpen();
    try {
        return std::forward<Action>(action)();
    } catch (const GenICam::GenericException&) {
        RethrowForPeople(camera, node);
    }
}

}  // namespace Vanto
