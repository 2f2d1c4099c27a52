/* SPDX-License-Identifier: Apache-2.0 */
/*
 * StreamParser: finds GenCP packets in a stream of bytes that may hold anything else as well
 */
#pragma once

#include <optional>

#include "gencp/Packet.h"

namespace gencp {

/// Thread-bound. Holds at most what was appended and not yet taken.
class StreamParser {
public:
    void Append(ByteView bytes);
    std::optional<Packet> Next();
    std::size_t BytesNeeded() const noexcept;
    bool IsInsidePacket() const noexcept { return m_begin < m_bytes.size(); }
    std::optional<PacketHeader> PartialHeader() const noexcept;
    void GiveUpPartial();
    void Clear() noexcept;

    /// Packets with a good header whose SCD checksum was wrong, since construction.
    std::size_t DamagedPackets() const noexcept { return m_damaged; }
    /// Bytes that belonged to no packet, since construction.
    std::size_t SkippedBytes() const noexcept { return m_skipped; }

private:
    ByteView Rest() const noexcept { return ByteView(m_bytes).subspan(m_begin); }
    void Skip(std::size_t count) noexcept;
    void FindPreamble() noexcept;

    Bytes m_bytes;
    std::size_t m_begin = 0;  // first byte that is not yet taken or skipped
    std::size_t m_damaged = 0;
    std::size_t m_skipped = 0;
};

}  // namespace gencp
