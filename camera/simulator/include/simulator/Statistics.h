/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a simulated camera has seen and done
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>

namespace MarlowSim {

struct Statistics {
    std::uint64_t bytesIn = 0;
    std::uint64_t bytesOut = 0;
    std::uint64_t packetsIn = 0;           ///< whole commands that came, those that were then made to get lost included
    std::uint64_t packetsOut = 0;          ///< acknowledges that left the camera, those that were then lost included
    std::uint64_t lost = 0;                ///< packets that were made to get lost
    std::uint64_t damaged = 0;             ///< packets that were made to be damaged
    std::uint64_t repeated = 0;            ///< packets that were made to come twice
    std::uint64_t noiseBytes = 0;          ///< bytes that came or left while the rates differed, and endless noise
    std::chrono::nanoseconds lineTime{0};  ///< that all these bytes take on a real line, paced or not
    std::uint64_t executed = 0;            ///< commands that were carried out
    std::uint64_t resent = 0;              ///< commands that were answered again and not carried out again
    std::map<std::uint64_t, std::uint64_t> writes;  ///< by address: writes that were carried out

    std::uint64_t WritesAt(std::uint64_t address) const {
        const auto found = writes.find(address);
        return found == writes.end() ? 0 : found->second;
    }
    std::string ToText() const;
};

}  // namespace MarlowSim
