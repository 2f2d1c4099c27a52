/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Command data (SCD) of the memory commands, both ways
 */

#include "gencp/Memory.h"

#include <algorithm>

namespace gencp {

namespace {

constexpr std::size_t kRangeLengthOffset = 10;  // behind address 8 and reserved 2
constexpr std::size_t kReservedSize = 2;

void StoreRange(std::span<std::uint8_t> bytes, std::size_t offset, std::uint64_t address, std::size_t length) {
    Store64(bytes, offset, address);
    Store16(bytes, offset + kRangeLengthOffset, static_cast<std::uint16_t>(length));
}

}  // namespace

/// The SCD of a ReadMem (one range) or a ReadMemStacked command.
Bytes EncodeRanges(std::span<const MemoryRange> ranges) {
    Bytes scd(ranges.size() * kRangeSize);
    for (std::size_t i = 0; i < ranges.size(); ++i)
        StoreRange(scd, i * kRangeSize, ranges[i].address, ranges[i].length);
    return scd;
}

/// The ranges of a ReadMem or ReadMemStacked command; nothing unless it is a whole number of them, at least one.
std::optional<std::vector<MemoryRange>> DecodeRanges(ByteView scd) {
    if (scd.empty() || scd.size() % kRangeSize != 0)
        return std::nullopt;
    std::vector<MemoryRange> ranges;
    for (std::size_t at = 0; at < scd.size(); at += kRangeSize)
        ranges.push_back({Load64(scd, at), Load16(scd, at + kRangeLengthOffset)});
    return ranges;
}

/// The SCD of a WriteMem command.
Bytes EncodeWrite(std::uint64_t address, ByteView data) {
    Bytes scd(kAddressSize + data.size());
    Store64(scd, 0, address);
    std::ranges::copy(data, scd.begin() + kAddressSize);
    return scd;
}

/// Address and data of a WriteMem command; nothing without at least one byte of data.
std::optional<MemoryWrite> DecodeWrite(ByteView scd) {
    if (scd.size() <= kAddressSize)
        return std::nullopt;
    const auto data = scd.subspan(kAddressSize);
    return MemoryWrite{Load64(scd, 0), Bytes(data.begin(), data.end())};
}

/// The SCD of a WriteMemStacked command.
Bytes EncodeStackedWrites(std::span<const MemoryWrite> writes) {
    Bytes scd;
    for (const auto& write : writes) {
        const std::size_t at = scd.size();
        scd.resize(at + kRangeSize + write.data.size());
        StoreRange(scd, at, write.address, write.data.size());
        std::ranges::copy(write.data, scd.begin() + static_cast<std::ptrdiff_t>(at + kRangeSize));
    }
    return scd;
}

/// The writes of a WriteMemStacked command; nothing when a length points behind the end, or without any write.
std::optional<std::vector<MemoryWrite>> DecodeStackedWrites(ByteView scd) {
    std::vector<MemoryWrite> writes;
    while (!scd.empty()) {
        if (scd.size() < kRangeSize)
            return std::nullopt;
        const std::size_t length = Load16(scd, kRangeLengthOffset);
        if (scd.size() - kRangeSize < length)
            return std::nullopt;
        const auto data = scd.subspan(kRangeSize, length);
        writes.push_back({Load64(scd, 0), Bytes(data.begin(), data.end())});
        scd = scd.subspan(kRangeSize + length);
    }
    if (writes.empty())
        return std::nullopt;
    return writes;
}

/// The SCD of a WriteMem or WriteMemStacked acknowledge that says how much was written.
Bytes EncodeWrittenLengths(std::span<const std::uint16_t> lengths) {
    Bytes scd(lengths.size() * kWrittenLengthSize);
    for (std::size_t i = 0; i < lengths.size(); ++i)
        Store16(scd, i * kWrittenLengthSize + kReservedSize, lengths[i]);
    return scd;
}

/// The lengths of a write acknowledge; nothing unless the SCD is a whole number of them.
std::optional<std::vector<std::uint16_t>> DecodeWrittenLengths(ByteView scd) {
    if (scd.size() % kWrittenLengthSize != 0)
        return std::nullopt;
    std::vector<std::uint16_t> lengths;
    for (std::size_t at = 0; at < scd.size(); at += kWrittenLengthSize)
        lengths.push_back(Load16(scd, at + kReservedSize));
    return lengths;
}

/// The SCD of a pending acknowledge: how long the command will take from now, milliseconds.
Bytes EncodePendingAck(std::uint16_t timeoutMs) {
    Bytes scd(kPendingAckSize);
    Store16(scd, kReservedSize, timeoutMs);
    return scd;
}

/// The time-out of a pending acknowledge, milliseconds from when it was sent; nothing from an SCD of another size.
std::optional<std::uint16_t> DecodePendingAck(ByteView scd) noexcept {
    if (scd.size() != kPendingAckSize)
        return std::nullopt;
    return Load16(scd, kReservedSize);
}

}  // namespace gencp
