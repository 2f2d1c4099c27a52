/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the bootstrap registers say about a camera, read once per connection
 */
#pragma once

#include <cstdint>

#include "CameraMemory.h"
#include "DeviceId.h"

namespace marlow {

// Any minor version of GenCP 1 will do.
inline constexpr std::uint32_t kGenCpMajor = 1;
inline constexpr unsigned kMajorShift = 16;

struct CameraFacts {
    CameraName name;
    std::uint64_t capability = 0;
    Duration responseTime{};
    // Registers as they were read, up to their terminators: enough to know the camera again.
    gencp::Bytes model;
    gencp::Bytes serial;

    bool Has(std::uint64_t bit) const { return (capability & bit) != 0; }
};

CameraFacts Identify(CameraMemory& memory);
bool AnswersAsBefore(CameraMemory& memory, const CameraFacts& known);
bool IsSameCamera(CameraMemory& memory, const CameraFacts& known);
void ApplyFacts(CameraMemory& memory, const CameraFacts& facts);

}  // namespace marlow
