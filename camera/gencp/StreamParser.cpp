/* SPDX-License-Identifier: Apache-2.0 */
/*
 * StreamParser: finds GenCP packets in a stream of bytes that may hold anything else as well
 */

#include "gencp/StreamParser.h"

#include <algorithm>

namespace gencp {

/**
 * \brief Take bytes as they came from the line
 * \param[in] bytes Any number, in any pieces
 */
void StreamParser::Append(ByteView bytes) {
    m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_begin));
    m_begin = 0;
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    FindPreamble();
}

/**
 * \brief The next whole, intact packet
 *
 * Of a damaged packet only the preamble is skipped: when bytes of it were lost, the next good packet begins inside the
 * length that its header gives.
 *
 * \return Nothing when more bytes are needed
 */
std::optional<Packet> StreamParser::Next() {
    while (Rest().size() >= kHeaderSize) {
        const auto header = ParseHeader(Rest());
        if (!header) {
            Skip(1);
            FindPreamble();
            continue;
        }
        if (Rest().size() < header->PacketSize())
            return std::nullopt;
        const auto bytes = Rest().first(header->PacketSize());
        if (!IsScdIntact(bytes)) {
            ++m_damaged;
            Skip(kPreambleSize);
            FindPreamble();
            continue;
        }
        const auto scd = bytes.subspan(kHeaderSize);
        Packet packet{*header, Bytes(scd.begin(), scd.end())};
        m_begin += bytes.size();
        FindPreamble();
        return packet;
    }
    return std::nullopt;
}

/**
 * \brief How many bytes must come at least before Next can give a packet
 *
 * A reader that asks the line for exactly so many neither waits for bytes that will not come nor takes several calls.
 *
 * \return At least 1 after Next gave nothing
 */
std::size_t StreamParser::BytesNeeded() const noexcept {
    const std::size_t have = Rest().size();
    const auto header = PartialHeader();
    const std::size_t want = header ? header->PacketSize() : kHeaderSize;
    return want > have ? want - have : 0;
}

/// The header of the packet that has begun, once it is there.
std::optional<PacketHeader> StreamParser::PartialHeader() const noexcept {
    return ParseHeader(Rest());
}

/**
 * \brief The packet that has begun will not become whole: look for another behind its beginning
 */
void StreamParser::GiveUpPartial() {
    if (!IsInsidePacket())
        return;
    Skip(1);
    FindPreamble();
}

/// Forget all bytes; the counts stay.
void StreamParser::Clear() noexcept {
    m_skipped += Rest().size();
    m_bytes.clear();
    m_begin = 0;
}

void StreamParser::Skip(std::size_t count) noexcept {
    const std::size_t skipped = std::min(count, Rest().size());
    m_begin += skipped;
    m_skipped += skipped;
}

// Leaves the rest empty or beginning with a preamble or with the last byte, which may be the first of one.
void StreamParser::FindPreamble() noexcept {
    const auto rest = Rest();
    std::size_t at = 0;
    for (; at < rest.size(); ++at) {
        if (rest[at] == kPreambleFirst && (at + 1 == rest.size() || rest[at + 1] == kPreambleSecond))
            break;
    }
    Skip(at);
}

}  // namespace gencp
