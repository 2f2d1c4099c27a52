/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What happens to packets on a bad line, by chance and by count
 */
#pragma once

#include <cstdint>
#include <random>

#include "gencp/ByteOrder.h"
#include "simulator/CameraOptions.h"

namespace MarlowSim {

/// Draws from a generator with a given seed, so that a run can be had again. Thread-bound.
class FaultSource {
public:
    /// What becomes of one packet.
    struct Fate {
        bool isLost = false;
        bool isDamaged = false;
        bool isRepeated = false;
        bool isLate = false;
        bool isLast = false;       ///< the cable is pulled behind it
        bool silencesNow = false;  ///< the camera falls silent behind it
    };

    explicit FaultSource(std::uint64_t seed) : m_random(seed) {}

    Fate Next(FaultSettings& settings);
    gencp::Bytes Damage(gencp::Bytes packet);
    gencp::Bytes Noise(std::size_t count);

private:
    bool Happens(double probability);
    std::size_t Below(std::size_t end);

    std::mt19937_64 m_random;
};

}  // namespace MarlowSim
