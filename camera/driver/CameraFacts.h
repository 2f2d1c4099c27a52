/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the bootstrap registers say about a camera, read once per connection
 */
#pragma once

#include <cstdint>

#include "CameraMemory.h"
#include "DeviceId.h"

namespace marlow {

/// What a look for a camera asks for: of all registers, a device has to be fastest with its response time.
struct CameraLimits {
    std::uint64_t capability = 0;
    Duration responseTime{};

    bool operator==(const CameraLimits&) const = default;
};

struct CameraFacts {
    CameraName name;
    std::uint32_t version = 0;  ///< of GenCP
    CameraLimits limits;
    // Registers as they were read, up to their terminators: enough to know the camera again.
    gencp::Bytes model;
    gencp::Bytes deviceVersion;
    gencp::Bytes serial;

    bool Has(std::uint64_t bit) const { return (limits.capability & bit) != 0; }
};

CameraLimits ReadLimits(CameraMemory& memory, const Timing& timing);
CameraFacts Identify(CameraMemory& memory, const CameraLimits& limits);

/// Who has answered where a known camera was asked for.
enum class Presence { kSame, kAnother, kNobody };

Presence AskFor(CameraMemory& memory, const CameraFacts& known);
bool IsSameCamera(CameraMemory& memory, const CameraFacts& known, const CameraLimits& limits);

}  // namespace marlow
