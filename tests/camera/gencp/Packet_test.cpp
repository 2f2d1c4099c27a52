/* SPDX-License-Identifier: Apache-2.0 */
#include "gencp/Packet.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "gencp/Checksum.h"

namespace {

using namespace gencp;

TEST(Packet, HasTheFieldsAtTheirPlaces) {
    const Bytes packet = BuildCommand(kReadMem, 0x1234, Bytes{0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 64});
    ASSERT_EQ(packet.size(), 28u);
    EXPECT_EQ(Load16(packet, 0), 0x0100);
    EXPECT_EQ(Load16(packet, 6), 0x0000);
    EXPECT_EQ(Load16(packet, 8), 0x4000);
    EXPECT_EQ(Load16(packet, 10), 0x0800);
    EXPECT_EQ(Load16(packet, 12), 12);
    EXPECT_EQ(Load16(packet, 14), 0x1234);
    EXPECT_EQ(Load16(packet, 2), Checksum(ByteView(packet).subspan(6, 10)));
    EXPECT_EQ(Load16(packet, 4), Checksum(ByteView(packet).subspan(6)));
}

TEST(Packet, KnownBytesOfTheFirstVersionRead) {
    const Bytes expected{0x01, 0x00, 0xB7, 0xF3, 0xB7, 0xEF, 0x00, 0x00, 0x40, 0x00, 0x08, 0x00, 0x00, 0x0C,
                         0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x04};
    EXPECT_EQ(BuildCommand(kReadMem, 0, Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4}), expected);
}

TEST(Packet, ResendSetsItsFlagOnly) {
    const Bytes first = BuildCommand(kWriteMem, 7, Bytes{1, 2}, false);
    const Bytes second = BuildCommand(kWriteMem, 7, Bytes{1, 2}, true);
    EXPECT_EQ(Load16(second, 8), 0xC000);
    EXPECT_EQ(Bytes(first.begin() + 10, first.end()), Bytes(second.begin() + 10, second.end()));
    EXPECT_TRUE(ParseHeader(second)->IsResend());
    EXPECT_FALSE(ParseHeader(first)->IsResend());
}

TEST(Packet, ParsesWhatWasBuilt) {
    const Bytes packet = BuildAcknowledge(AcknowledgeOf(kReadMem), kStatusBusy, 0xFFFF, Bytes(5, 9));
    const auto header = ParseHeader(packet);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->channel, kControlChannel);
    EXPECT_EQ(header->flags, kStatusBusy);
    EXPECT_EQ(header->command, 0x0801);
    EXPECT_TRUE(header->IsAcknowledge());
    EXPECT_EQ(header->scdLength, 5);
    EXPECT_EQ(header->requestId, 0xFFFF);
    EXPECT_EQ(header->PacketSize(), packet.size());
    EXPECT_TRUE(IsScdIntact(packet));
}

TEST(Packet, TheLongestOneHas1024Bytes) {
    EXPECT_EQ(BuildAcknowledge(0x0801, 0, 1, Bytes(kMaxScdSize)).size(), 1024u);
    EXPECT_THROW(BuildAcknowledge(0x0801, 0, 1, Bytes(kMaxScdSize + 1)), std::length_error);
}

TEST(Packet, HeaderWithAWrongBitIsRefused) {
    const Bytes good = BuildCommand(kReadMem, 3, Bytes(12, 1));
    for (std::size_t bit = 0; bit < kHeaderSize * 8; ++bit) {
        if (bit / 8 == kScdChecksumOffset || bit / 8 == kScdChecksumOffset + 1)
            continue;
        Bytes bad = good;
        bad[bit / 8] ^= static_cast<std::uint8_t>(1u << (bit % 8));
        EXPECT_FALSE(ParseHeader(bad)) << bit;
    }
}

TEST(Packet, DataWithAWrongBitIsNotIntact) {
    const Bytes good = BuildCommand(kReadMem, 3, Bytes(12, 1));
    for (std::size_t bit = kScdChecksumOffset * 8; bit < good.size() * 8; ++bit) {
        Bytes bad = good;
        bad[bit / 8] ^= static_cast<std::uint8_t>(1u << (bit % 8));
        EXPECT_FALSE(IsScdIntact(bad)) << bit;
    }
}

TEST(Packet, HeaderOfAPacketTooLongIsRefused) {
    Bytes packet = BuildCommand(kReadMem, 3, {});
    Store16(packet, kScdLengthOffset, kMaxScdSize + 1);
    Store16(packet, kCcdChecksumOffset, Checksum(ByteView(packet).subspan(6, 10)));
    EXPECT_FALSE(ParseHeader(packet));
    Store16(packet, kScdLengthOffset, kMaxScdSize);
    Store16(packet, kCcdChecksumOffset, Checksum(ByteView(packet).subspan(6, 10)));
    EXPECT_TRUE(ParseHeader(packet));
}

TEST(Packet, TooFewBytesAreNoHeader) {
    const Bytes packet = BuildCommand(kReadMem, 3, {});
    for (std::size_t size = 0; size < kHeaderSize; ++size) {
        EXPECT_FALSE(ParseHeader(ByteView(packet).first(size)));
        EXPECT_FALSE(IsScdIntact(ByteView(packet).first(size)));
    }
}

TEST(RequestId, GrowsByOneAndWrapsToOne) {
    EXPECT_EQ(NextRequestId(kFirstRequestId), 1);
    EXPECT_EQ(NextRequestId(1), 2);
    EXPECT_EQ(NextRequestId(0xFFFE), 0xFFFF);
    EXPECT_EQ(NextRequestId(0xFFFF), 1);
}

TEST(Status, HasAName) {
    EXPECT_EQ(StatusName(kStatusInvalidAddress), "invalid address");
    EXPECT_EQ(StatusName(kStatusSuccess), "success");
    EXPECT_EQ(StatusName(0x8ABC), "unknown error");
    EXPECT_EQ(StatusName(0x0001), "warning");
    EXPECT_EQ(StatusName(0xC003), "device-specific status");
    EXPECT_EQ(StatusName(0xA003), "technology-specific status");
}

TEST(Status, IsAnErrorByItsHighestBit) {
    EXPECT_TRUE(IsError(kStatusGenericError));
    EXPECT_FALSE(IsError(kStatusSuccess));
    EXPECT_FALSE(IsError(0x2001));
}

}  // namespace
