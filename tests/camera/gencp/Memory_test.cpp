/* SPDX-License-Identifier: Apache-2.0 */
#include "gencp/Memory.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace gencp;

TEST(Ranges, OneIsAReadMemCommand) {
    const std::vector<MemoryRange> ranges{{0x0102030405060708, 0x03F0}};
    const Bytes scd = EncodeRanges(ranges);
    EXPECT_EQ(scd, (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 0, 0, 0x03, 0xF0}));
    EXPECT_EQ(DecodeRanges(scd), ranges);
}

TEST(Ranges, SeveralAreAStackedRead) {
    const std::vector<MemoryRange> ranges{{0x0004, 64}, {0x0144, 64}, {0x01C4, 8}};
    EXPECT_EQ(DecodeRanges(EncodeRanges(ranges)), ranges);
}

TEST(Ranges, OddSizesAreRefused) {
    for (const std::size_t size : {0u, 1u, 11u, 13u, 23u})
        EXPECT_FALSE(DecodeRanges(Bytes(size))) << size;
}

TEST(Write, IsAddressAndData) {
    const Bytes data{0xDE, 0xAD};
    const Bytes scd = EncodeWrite(0x10000, data);
    EXPECT_EQ(scd, (Bytes{0, 0, 0, 0, 0, 1, 0, 0, 0xDE, 0xAD}));
    EXPECT_EQ(DecodeWrite(scd), (MemoryWrite{0x10000, data}));
}

TEST(Write, WithoutDataIsRefused) {
    EXPECT_FALSE(DecodeWrite({}));
    EXPECT_FALSE(DecodeWrite(Bytes(7)));
    EXPECT_FALSE(DecodeWrite(Bytes(8)));
}

TEST(StackedWrites, ComeBackAsTheyWere) {
    const std::vector<MemoryWrite> writes{{0x10, {1, 2, 3}}, {0x20, {}}, {0x30, {4}}};
    EXPECT_EQ(DecodeStackedWrites(EncodeStackedWrites(writes)), writes);
}

TEST(StackedWrites, MayEndInOneWithoutData) {
    const std::vector<MemoryWrite> writes{{0x10, {1, 2}}, {0x20, {}}};
    EXPECT_EQ(DecodeStackedWrites(EncodeStackedWrites(writes)), writes);
}

TEST(StackedWrites, WithALengthBehindTheEndAreRefused) {
    Bytes scd = EncodeStackedWrites(std::vector<MemoryWrite>{{0x10, {1, 2, 3}}});
    EXPECT_FALSE(DecodeStackedWrites(ByteView(scd).first(14)));
    EXPECT_FALSE(DecodeStackedWrites(ByteView(scd).first(5)));
    EXPECT_FALSE(DecodeStackedWrites({}));
    Store16(scd, 10, 0xFFFF);
    EXPECT_FALSE(DecodeStackedWrites(scd));
}

TEST(StackedWrites, AnyBytesAreDecodedOrRefused) {
    std::mt19937 random(5);
    for (int round = 0; round < 20000; ++round) {
        Bytes scd(random() % 64);
        for (auto& byte : scd)
            byte = static_cast<std::uint8_t>(random() % 8);
        const auto writes = DecodeStackedWrites(scd);
        EXPECT_TRUE(!writes || EncodeStackedWrites(*writes).size() == scd.size());
    }
}

TEST(WrittenLengths, ComeBackAsTheyWere) {
    const std::vector<std::uint16_t> lengths{4, 0, 1000};
    EXPECT_EQ(DecodeWrittenLengths(EncodeWrittenLengths(lengths)), lengths);
    EXPECT_EQ(EncodeWrittenLengths(std::vector<std::uint16_t>{0x0102}), (Bytes{0, 0, 1, 2}));
    EXPECT_FALSE(DecodeWrittenLengths(Bytes(3)));
}

TEST(PendingAck, SaysMilliseconds) {
    EXPECT_EQ(EncodePendingAck(0x1234), (Bytes{0, 0, 0x12, 0x34}));
    EXPECT_EQ(DecodePendingAck(EncodePendingAck(65535)), 65535);
    EXPECT_FALSE(DecodePendingAck(Bytes(3)));
    EXPECT_FALSE(DecodePendingAck(Bytes(5)));
}

}  // namespace
