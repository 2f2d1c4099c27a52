/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What happens to packets on a bad line, by chance and by count
 */

#include "line/FaultSource.h"

#include <optional>

#include "gencp/StreamParser.h"

namespace MarlowSim {

namespace {

/// Counts one down; true when it had come to the end.
bool HasEnded(std::optional<std::uint64_t>& countdown) {
    if (!countdown)
        return false;
    if (*countdown > 0) {
        --*countdown;
        return false;
    }
    countdown.reset();
    return true;
}

/// As HasEnded, but true already with the last one that is counted, for a countdown that is not 0.
bool IsLastOf(std::optional<std::uint64_t>& countdown) {
    if (!countdown)
        return false;
    *countdown -= *countdown > 0 ? 1 : 0;
    if (*countdown > 0)
        return false;
    countdown.reset();
    return true;
}

/// Whether a receiver still finds a packet, be it behind an added byte.
bool HoldsPacket(const gencp::Bytes& bytes) {
    gencp::StreamParser parser;
    parser.Append(bytes);
    return parser.Next().has_value();
}

}  // namespace

bool FaultSource::Happens(double probability) {
    return probability > 0 && std::uniform_real_distribution<double>()(m_random) < probability;
}

std::size_t FaultSource::Below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(m_random);
}

/**
 * \brief Decide about the next packet
 * \param[in,out] settings Its countdowns are counted down
 */
FaultSource::Fate FaultSource::Next(FaultSettings& settings) {
    Fate fate;
    fate.isLost = HasEnded(settings.failAt) || Happens(settings.loss);
    fate.isDamaged = Happens(settings.damage);
    fate.isRepeated = Happens(settings.repeat);
    fate.isLate = Happens(settings.late);
    fate.isLast = IsLastOf(settings.dropAfter);
    fate.silencesNow = IsLastOf(settings.silentAfter);
    return fate;
}

/**
 * \brief Change, drop or add bytes of a packet
 * \return Bytes that no checksum takes for the packet: two errors can cancel each other out, and a test of what a host
 *         does with damaged packets is no test of the strength of a 16-bit sum
 */
gencp::Bytes FaultSource::Damage(gencp::Bytes packet) {
    const gencp::Bytes whole = packet;
    do {
        packet = whole;
        const std::size_t at = Below(packet.size());
        const auto place = packet.begin() + static_cast<std::ptrdiff_t>(at);
        switch (Below(4)) {
            case 0:
                packet.erase(place);
                break;
            case 1:
                packet.insert(place, static_cast<std::uint8_t>(Below(256)));
                break;
            default:
                *place ^= static_cast<std::uint8_t>(1 + Below(255));
        }
    } while (HoldsPacket(packet));
    return packet;
}

/**
 * \brief Give bytes as a receiver at another rate sees them
 */
gencp::Bytes FaultSource::Noise(std::size_t count) {
    gencp::Bytes bytes(count);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(Below(256));
    return bytes;
}

}  // namespace MarlowSim
