/* SPDX-License-Identifier: Apache-2.0 */
/*
 * KnownCameras: where each camera was last seen, so that it is found again at once
 */
#pragma once

#include <list>
#include <mutex>
#include <optional>
#include <string>

#include "CLProtocol/CLProtocolC.h"
#include "CameraFacts.h"
#include "RateFinder.h"
#include "os/LockName.h"

namespace marlow {

/// A driver is not told which port a line belongs to. It knows two things that stand for one: the camera that a host
/// asks for by its DeviceID, and the address of the host's line object, which may be another port's by now and is only
/// good for a first guess. Thread-safe; keeps the newest entries only.
class KnownCameras {
public:
    struct Camera {
        CameraFacts facts;
        std::uint32_t rateFlag = 0;
    };

    void Remember(const CLProtocol::ISerial* line, const CameraFacts& facts, std::uint32_t rateFlag);
    std::optional<Camera> Find(const DeviceRequest& request) const;
    std::optional<std::uint32_t> RateOf(const CLProtocol::ISerial* line) const;
    void Clear();

private:
    struct Line {
        const CLProtocol::ISerial* line;
        std::uint32_t rateFlag;
    };

    mutable std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "driver's cameras"};
    std::list<Camera> m_cameras;  // newest first
    std::list<Line> m_lines;
};

}  // namespace marlow
