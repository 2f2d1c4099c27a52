/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One GenCP packet: its fields, and their bytes on the line
 */

#include "gencp/Packet.h"

#include <algorithm>
#include <stdexcept>

#include "gencp/Checksum.h"

namespace gencp {

/**
 * \brief The bytes of a packet, both checksums in place
 * \param[in] header Fields; its scdLength is not looked at
 * \param[in] scd At most kMaxScdSize bytes
 *
 * \throw std::length_error The packet would be longer than GenCP allows on a serial link
 * \context Reentrant
 */
Bytes BuildPacket(const PacketHeader& header, ByteView scd) {
    if (scd.size() > kMaxScdSize)
        throw std::length_error("a GenCP packet of more than 1024 bytes");
    Bytes packet(kHeaderSize + scd.size());
    packet[0] = kPreambleFirst;
    packet[1] = kPreambleSecond;
    Store16(packet, kChannelOffset, header.channel);
    Store16(packet, kFlagsOffset, header.flags);
    Store16(packet, kCommandOffset, header.command);
    Store16(packet, kScdLengthOffset, static_cast<std::uint16_t>(scd.size()));
    Store16(packet, kRequestIdOffset, header.requestId);
    std::ranges::copy(scd, packet.begin() + kHeaderSize);
    const ByteView bytes(packet);
    Store16(packet, kCcdChecksumOffset, Checksum(bytes.subspan(kChecksummedFrom, kHeaderSize - kChecksummedFrom)));
    Store16(packet, kScdChecksumOffset, Checksum(bytes.subspan(kChecksummedFrom)));
    return packet;
}

/**
 * \brief The bytes of a command that wants an acknowledge
 * \param[in] command Command id, lowest bit clear
 * \param[in] requestId As the host counts them
 * \param[in] scd Command data, at most kMaxScdSize bytes
 * \param[in] resend True when the same request id was sent before
 *
 * \throw std::length_error As BuildPacket
 */
Bytes BuildCommand(std::uint16_t command, std::uint16_t requestId, ByteView scd, bool resend) {
    PacketHeader header;
    header.flags = static_cast<std::uint16_t>(kFlagRequestAck | (resend ? kFlagCommandResend : 0));
    header.command = command;
    header.requestId = requestId;
    return BuildPacket(header, scd);
}

/**
 * \brief The bytes of an acknowledge
 * \param[in] acknowledge Acknowledge id, lowest bit set
 * \param[in] status One of the kStatus numbers
 * \param[in] requestId That of the command
 * \param[in] scd Answer, at most kMaxScdSize bytes
 *
 * \throw std::length_error As BuildPacket
 */
Bytes BuildAcknowledge(std::uint16_t acknowledge, std::uint16_t status, std::uint16_t requestId, ByteView scd) {
    PacketHeader header;
    header.flags = status;
    header.command = acknowledge;
    header.requestId = requestId;
    return BuildPacket(header, scd);
}

/**
 * \brief The header at the beginning of some bytes
 * \param[in] bytes Any bytes from outside
 *
 * \return Nothing unless there is a whole header with preamble, right CCD checksum and an allowed length
 */
std::optional<PacketHeader> ParseHeader(ByteView bytes) noexcept {
    if (bytes.size() < kHeaderSize || bytes[0] != kPreambleFirst || bytes[1] != kPreambleSecond)
        return std::nullopt;
    const auto checksummed = bytes.subspan(kChecksummedFrom, kHeaderSize - kChecksummedFrom);
    if (!IsChecksumOf(checksummed, Load16(bytes, kCcdChecksumOffset)))
        return std::nullopt;
    PacketHeader header;
    header.channel = Load16(bytes, kChannelOffset);
    header.flags = Load16(bytes, kFlagsOffset);
    header.command = Load16(bytes, kCommandOffset);
    header.scdLength = Load16(bytes, kScdLengthOffset);
    header.requestId = Load16(bytes, kRequestIdOffset);
    if (header.scdLength > kMaxScdSize)
        return std::nullopt;
    return header;
}

/**
 * \brief Whether the SCD checksum of a whole packet is right
 * \param[in] packet Exactly one packet, header included; anything shorter than a header is not intact
 */
bool IsScdIntact(ByteView packet) noexcept {
    return packet.size() >= kHeaderSize &&
           IsChecksumOf(packet.subspan(kChecksummedFrom), Load16(packet, kScdChecksumOffset));
}

}  // namespace gencp
