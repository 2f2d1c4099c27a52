/* SPDX-License-Identifier: Apache-2.0 */
/*
 * RateFinder: the baud rate that a camera is at
 */
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CameraFacts.h"
#include "CameraMemory.h"
#include "Exchanger.h"
#include "SerialLine.h"

namespace marlow {

/// Where the camera was last seen; flags of gencp::kBaudRates.
struct RateHints {
    std::optional<std::uint32_t> ofCamera;   ///< of the very camera that is asked for
    std::optional<std::uint32_t> ofPort;     ///< of whatever camera was on what seems to be this port
    std::optional<std::uint32_t> justAsked;  ///< where nobody has answered a moment ago
};

/// Thread-bound, for one search.
class RateFinder {
public:
    RateFinder(SerialLine& line, Exchanger& exchanger, CameraMemory& memory, Logger& logger)
        : m_line(line), m_exchanger(exchanger), m_memory(memory), m_logger(logger) {}

    CameraLimits Find(const RateHints& hints);
    bool GoTo(std::uint32_t flag);

private:
    struct Attempt {
        std::uint32_t flag;
        bool isPatient = false;
    };

    bool WasAnythingReceived(Time until);
    std::vector<Attempt> AllRates(const RateHints& hints) const;
    std::vector<Attempt> LikelyRates(const RateHints& hints) const;
    static std::vector<Attempt> Patiently(std::vector<Attempt> attempts);
    std::optional<CameraLimits> TryAll(const std::vector<Attempt>& attempts);
    std::optional<CameraLimits> Try(const Attempt& attempt);
    std::string TriedRates() const;

    SerialLine& m_line;
    Exchanger& m_exchanger;
    CameraMemory& m_memory;
    Logger& m_logger;
    const std::uint64_t m_receivedBefore = m_line.ReceivedBytes();
    std::vector<std::uint32_t> m_tried;  // bit/s
};

}  // namespace marlow
