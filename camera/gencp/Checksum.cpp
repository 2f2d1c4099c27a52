/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The checksum of GenCP packets on a serial link
 */

#include "gencp/Checksum.h"

namespace gencp {

/**
 * \brief One's complement of the one's complement sum of big-endian 16-bit words (the algorithm of RFC 768)
 * \param[in] bytes Any number of bytes; an odd last one counts as the high byte of a word
 *
 * \context Reentrant
 */
std::uint16_t Checksum(ByteView bytes) noexcept {
    std::uint64_t sum = 0;
    std::size_t at = 0;
    for (; at + 1 < bytes.size(); at += 2)
        sum += Load16(bytes, at);
    if (at < bytes.size())
        sum += static_cast<std::uint64_t>(bytes[at]) << 8;
    while (sum >> 16)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return static_cast<std::uint16_t>(~sum & 0xFFFF);
}

/// Whether a received checksum is that of the bytes. A sender that follows RFC 768 to the end writes 0xFFFF for 0.
bool IsChecksumOf(ByteView bytes, std::uint16_t received) noexcept {
    const std::uint16_t expected = Checksum(bytes);
    return received == expected || (expected == 0 && received == 0xFFFF);
}

}  // namespace gencp
