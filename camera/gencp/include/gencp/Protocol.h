/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The numbers of GenCP packets (GenCP 1.0 to 1.3 over a serial link); docs/gencp-format.md shows the layout
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace gencp {

// The header: prefix (preamble, checksums, channel) and common command data (CCD).
inline constexpr std::uint8_t kPreambleFirst = 0x01;
inline constexpr std::uint8_t kPreambleSecond = 0x00;
inline constexpr std::size_t kPreambleSize = 2;
inline constexpr std::size_t kCcdChecksumOffset = 2;
inline constexpr std::size_t kScdChecksumOffset = 4;
inline constexpr std::size_t kChannelOffset = 6;
inline constexpr std::size_t kFlagsOffset = 8;  ///< flags of a command, status of an acknowledge
inline constexpr std::size_t kCommandOffset = 10;
inline constexpr std::size_t kScdLengthOffset = 12;
inline constexpr std::size_t kRequestIdOffset = 14;
inline constexpr std::size_t kHeaderSize = 16;
inline constexpr std::size_t kChecksummedFrom = kChannelOffset;  ///< both checksums begin here

inline constexpr std::size_t kMaxPacketSize = 1024;  ///< everything counted
inline constexpr std::size_t kMaxScdSize = kMaxPacketSize - kHeaderSize;
inline constexpr std::uint16_t kControlChannel = 0;

// Flags of a command.
inline constexpr std::uint16_t kFlagRequestAck = 0x4000;
inline constexpr std::uint16_t kFlagCommandResend = 0x8000;

// Command ids; an acknowledge has the lowest bit set.
inline constexpr std::uint16_t kAcknowledgeBit = 0x0001;
inline constexpr std::uint16_t kReadMem = 0x0800;
inline constexpr std::uint16_t kWriteMem = 0x0802;
inline constexpr std::uint16_t kPendingAck = 0x0805;  ///< an acknowledge without a command
inline constexpr std::uint16_t kReadMemStacked = 0x0806;
inline constexpr std::uint16_t kWriteMemStacked = 0x0808;
inline constexpr std::uint16_t kEvent = 0x0C00;

constexpr std::uint16_t AcknowledgeOf(std::uint16_t command) {
    return command | kAcknowledgeBit;
}

// Sizes of the parts of command data (SCD).
inline constexpr std::size_t kRangeSize = 12;         ///< address 8, reserved 2, length 2
inline constexpr std::size_t kAddressSize = 8;        ///< before the data of a WriteMem
inline constexpr std::size_t kWrittenLengthSize = 4;  ///< reserved 2, length written 2
inline constexpr std::size_t kPendingAckSize = 4;     ///< reserved 2, temporary time-out 2
inline constexpr std::size_t kMaxReadData = kMaxScdSize;
inline constexpr std::size_t kMaxWriteData = kMaxScdSize - kAddressSize;
inline constexpr std::size_t kMaxRanges = kMaxScdSize / kRangeSize;

// Status of an acknowledge.
inline constexpr std::uint16_t kStatusErrorBit = 0x8000;
inline constexpr std::uint16_t kStatusNameSpaceMask = 0x6000;
inline constexpr std::uint16_t kStatusNameSpaceTechnology = 0x2000;
inline constexpr std::uint16_t kStatusNameSpaceDevice = 0x4000;
inline constexpr std::uint16_t kStatusCodeMask = 0x0FFF;
inline constexpr std::uint16_t kStatusSuccess = 0x0000;
inline constexpr std::uint16_t kStatusNotImplemented = 0x8001;
inline constexpr std::uint16_t kStatusInvalidParameter = 0x8002;
inline constexpr std::uint16_t kStatusInvalidAddress = 0x8003;
inline constexpr std::uint16_t kStatusWriteProtected = 0x8004;
inline constexpr std::uint16_t kStatusBadAlignment = 0x8005;
inline constexpr std::uint16_t kStatusAccessDenied = 0x8006;
inline constexpr std::uint16_t kStatusBusy = 0x8007;
inline constexpr std::uint16_t kStatusMessageTimeout = 0x800B;
inline constexpr std::uint16_t kStatusInvalidHeader = 0x800E;
inline constexpr std::uint16_t kStatusWrongConfiguration = 0x800F;
inline constexpr std::uint16_t kStatusGenericError = 0x8FFF;

constexpr bool IsError(std::uint16_t status) {
    return (status & kStatusErrorBit) != 0;
}

std::string_view StatusName(std::uint16_t status) noexcept;

// Request ids: 0 is for a first read that changes nothing; the counter wraps to 1.
inline constexpr std::uint16_t kFirstRequestId = 0;

constexpr std::uint16_t NextRequestId(std::uint16_t id) {
    return id == 0xFFFF ? std::uint16_t{1} : static_cast<std::uint16_t>(id + 1);
}

// Time: a byte takes 10 bits on the line (8 data bits, no parity, 1 stop bit).
inline constexpr unsigned kBitsPerByte = 10;
inline constexpr unsigned kMaxResends = 3;
inline constexpr unsigned kFirstReadTimeoutMs = 50;      ///< for reading the response time before it is known
inline constexpr unsigned kFirstCommandTimeoutMs = 300;  ///< for anything else before it is known
inline constexpr unsigned kMaxDeviceResponseTimeMs = 300;
inline constexpr unsigned kBaudRateConfirmMs = 250;  ///< a device waits so long for the confirming write
inline constexpr unsigned kBaudRateRevertMs = 500;   ///< a host waits so long before it goes back

}  // namespace gencp
