/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One GenCP packet: its fields, and their bytes on the line
 */
#pragma once

#include <optional>

#include "gencp/ByteOrder.h"
#include "gencp/Protocol.h"

namespace gencp {

/// What the header of a packet says; the checksums are made and checked where bytes are built and parsed.
struct PacketHeader {
    std::uint16_t channel = kControlChannel;
    std::uint16_t flags = 0;  ///< flags of a command, status of an acknowledge
    std::uint16_t command = 0;
    std::uint16_t scdLength = 0;
    std::uint16_t requestId = 0;

    bool IsAcknowledge() const { return (command & kAcknowledgeBit) != 0; }
    bool IsResend() const { return (flags & kFlagCommandResend) != 0; }
    std::size_t PacketSize() const { return kHeaderSize + scdLength; }
};

struct Packet {
    PacketHeader header;
    Bytes scd;
};

Bytes BuildPacket(const PacketHeader& header, ByteView scd);
Bytes BuildCommand(std::uint16_t command, std::uint16_t requestId, ByteView scd, bool resend = false);
Bytes BuildAcknowledge(std::uint16_t acknowledge, std::uint16_t status, std::uint16_t requestId, ByteView scd);

std::optional<PacketHeader> ParseHeader(ByteView bytes) noexcept;
bool IsScdIntact(ByteView packet) noexcept;

}  // namespace gencp
