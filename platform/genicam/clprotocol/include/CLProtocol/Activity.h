/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the module does on serial ports, told while it happens, and how to end it early
 */
#pragma once

#include <cstdint>
#include <functional>

#include "Base/GCString.h"
#include "CLProtocol/CLException.h"

namespace CLProtocol {

/// One step of a look for a camera or of the fetch of a description.
struct Activity {
    /// What happens.
    enum class Kind {
        kAsking,    ///< a driver is about to look for a camera on a port
        kAnswered,  ///< it ended; deviceId names the camera and is empty when there is none of the driver's own
        kFailed,    ///< it could not: errorCode and reason say why
        kFetching   ///< bytes of a description came in
    };
    Kind kind = Kind::kAsking;       ///<  what happens
    GenICam::gcstring portId{};      ///<  the port it happens on
    GenICam::gcstring deviceId{};    ///< full DeviceID or template that is looked for; after kAnswered of the camera
    std::int32_t errorCode = 0;      ///< of a CLErrException; 0 for any other failure
    GenICam::gcstring reason{};      ///< the failure's description
    std::uint32_t baudRateFlag = 0;  ///< CL_BAUDRATE_... at which the camera answered; 0 when unknown
    std::uint64_t doneBytes = 0;     ///< of the description that came in so far, packets around them included
    std::uint64_t totalBytes = 0;    ///< of the description; 0 while the driver has not said it
};

/// Takes one step. Called by the thread that uses the port or by one of the module's, several at once; must not use
/// a port.
using ActivityListener = std::function<void(const Activity&)>;

/// Sets who is told; an empty listener switches it off, which is the state at the start. Returns when nothing uses the
/// previous listener any more, unless called by that very listener. Thread-safe.
CLPROTOCOL_API void SetActivityListener(ActivityListener listener);

/// While true, looks for cameras and fetches of descriptions end early with CLErrException -10004, those that are under
/// way included; what puts baud rates back and accesses to registers go on. For programs that are asked to end.
/// Thread-safe.
CLPROTOCOL_API void SetStopRequested(bool stop) noexcept;

}  // namespace CLProtocol
