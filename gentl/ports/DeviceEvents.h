/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Numbers of the events that a module tells of itself
 */
#pragma once

#include <cstdint>

namespace gentl {

/// EVENT_MODULE of device and stream: the camera is gone.
inline constexpr std::int64_t kDeviceLostEvent = 0x9001;

}  // namespace gentl
