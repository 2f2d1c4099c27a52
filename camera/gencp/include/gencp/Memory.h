/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Command data (SCD) of the memory commands, both ways
 */
#pragma once

#include <optional>

#include "gencp/ByteOrder.h"
#include "gencp/Protocol.h"

namespace gencp {

struct MemoryRange {
    std::uint64_t address = 0;
    std::uint16_t length = 0;

    bool operator==(const MemoryRange&) const = default;
};

struct MemoryWrite {
    std::uint64_t address = 0;
    Bytes data;

    bool operator==(const MemoryWrite&) const = default;
};

// ReadMem has one range, ReadMemStacked any number.
Bytes EncodeRanges(std::span<const MemoryRange> ranges);
std::optional<std::vector<MemoryRange>> DecodeRanges(ByteView scd);

Bytes EncodeWrite(std::uint64_t address, ByteView data);
std::optional<MemoryWrite> DecodeWrite(ByteView scd);

Bytes EncodeStackedWrites(std::span<const MemoryWrite> writes);
std::optional<std::vector<MemoryWrite>> DecodeStackedWrites(ByteView scd);

// Lengths written: one for WriteMem (capability bit 11), one per write for WriteMemStacked.
Bytes EncodeWrittenLengths(std::span<const std::uint16_t> lengths);
std::optional<std::vector<std::uint16_t>> DecodeWrittenLengths(ByteView scd);

Bytes EncodePendingAck(std::uint16_t timeoutMs);
std::optional<std::uint16_t> DecodePendingAck(ByteView scd) noexcept;

}  // namespace gencp
