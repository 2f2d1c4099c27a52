/* SPDX-License-Identifier: Apache-2.0 */
#include "gencp/StreamParser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using namespace gencp;

constexpr std::uint16_t kReadAck = AcknowledgeOf(kReadMem);

Bytes Ack(std::uint16_t requestId, std::size_t size = 8) {
    return BuildAcknowledge(kReadAck, kStatusSuccess, requestId, Bytes(size, static_cast<std::uint8_t>(requestId)));
}

void Append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

std::vector<std::uint16_t> RequestIds(StreamParser& parser) {
    std::vector<std::uint16_t> ids;
    while (const auto packet = parser.Next())
        ids.push_back(packet->header.requestId);
    return ids;
}

Bytes Noise(std::mt19937& random, std::size_t size) {
    // Half the bytes look like a preamble's, so that the parser is led astray as often as can be.
    Bytes bytes(size);
    std::uniform_int_distribution<int> byte(0, 511);
    for (auto& value : bytes) {
        const int drawn = byte(random);
        value = static_cast<std::uint8_t>(drawn < 256 ? drawn : drawn & 1);
    }
    return bytes;
}

TEST(StreamParser, FindsPacketsInOnePiece) {
    StreamParser parser;
    Bytes bytes = Ack(1);
    Append(bytes, Ack(2, 0));
    parser.Append(bytes);
    EXPECT_EQ(RequestIds(parser), (std::vector<std::uint16_t>{1, 2}));
    EXPECT_FALSE(parser.IsInsidePacket());
    EXPECT_EQ(parser.SkippedBytes(), 0u);
}

TEST(StreamParser, FindsPacketsByteByByte) {
    StreamParser parser;
    const Bytes bytes = Ack(7, 100);
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
        parser.Append(ByteView(bytes).subspan(i, 1));
        EXPECT_FALSE(parser.Next());
    }
    parser.Append(ByteView(bytes).last(1));
    const auto packet = parser.Next();
    ASSERT_TRUE(packet);
    EXPECT_EQ(packet->scd, Bytes(100, 7));
}

TEST(StreamParser, SaysExactlyHowManyBytesAreMissing) {
    StreamParser parser;
    const Bytes bytes = Ack(7, 100);
    EXPECT_EQ(parser.BytesNeeded(), kHeaderSize);
    parser.Append(ByteView(bytes).first(5));
    EXPECT_EQ(parser.BytesNeeded(), kHeaderSize - 5);
    parser.Append(ByteView(bytes).subspan(5, 15));
    EXPECT_EQ(parser.BytesNeeded(), bytes.size() - 20);
    EXPECT_EQ(parser.PartialHeader()->requestId, 7);
}

TEST(StreamParser, SkipsStrayBytesBeforeAPacket) {
    for (const Bytes& stray : {Bytes{0x00}, Bytes{0x01}, Bytes{0x01, 0x00}, Bytes{0x01, 0x01}, Bytes(40, 0xFF)}) {
        StreamParser parser;
        Bytes bytes = stray;
        Append(bytes, Ack(3));
        parser.Append(bytes);
        EXPECT_EQ(RequestIds(parser), std::vector<std::uint16_t>{3});
        EXPECT_EQ(parser.SkippedBytes(), stray.size());
    }
}

TEST(StreamParser, CountsADamagedPacketAndGoesOn) {
    StreamParser parser;
    Bytes bytes = Ack(1, 50);
    bytes[40] ^= 0x10;
    Append(bytes, Ack(2));
    parser.Append(bytes);
    EXPECT_EQ(RequestIds(parser), std::vector<std::uint16_t>{2});
    EXPECT_EQ(parser.DamagedPackets(), 1u);
}

TEST(StreamParser, KeepsNothingOfADamagedPacketThatCouldBeginNone) {
    StreamParser parser;
    Bytes bytes = BuildAcknowledge(AcknowledgeOf(kWriteMem), kStatusSuccess, 0x5555, {});
    bytes[kScdChecksumOffset] ^= 0x20;
    parser.Append(bytes);
    EXPECT_FALSE(parser.Next());
    EXPECT_EQ(parser.DamagedPackets(), 1u);
    EXPECT_FALSE(parser.IsInsidePacket());
    EXPECT_EQ(parser.BytesNeeded(), kHeaderSize);
}

TEST(StreamParser, FindsAGoodPacketInsideTheLengthOfACutOne) {
    StreamParser parser;
    Bytes bytes = Ack(1, 200);
    bytes.erase(bytes.begin() + 60, bytes.begin() + 160);
    Append(bytes, Ack(2, 200));
    parser.Append(bytes);
    EXPECT_EQ(RequestIds(parser), std::vector<std::uint16_t>{2});
}

TEST(StreamParser, GivesUpAPartialPacketOnDemand) {
    StreamParser parser;
    Bytes bytes = Ack(1, 200);
    bytes.resize(100);
    Append(bytes, Ack(2, 20));
    parser.Append(bytes);
    EXPECT_FALSE(parser.Next());
    EXPECT_TRUE(parser.IsInsidePacket());
    parser.GiveUpPartial();
    EXPECT_EQ(RequestIds(parser), std::vector<std::uint16_t>{2});
    EXPECT_FALSE(parser.IsInsidePacket());
    parser.GiveUpPartial();
    EXPECT_EQ(parser.BytesNeeded(), kHeaderSize);
}

TEST(StreamParser, KeepsOnlyWhatMayBeginAPacket) {
    const auto skippedOf = [](const Bytes& bytes) {
        StreamParser parser;
        parser.Append(bytes);
        EXPECT_EQ(parser.IsInsidePacket(), parser.SkippedBytes() < bytes.size());
        return parser.SkippedBytes();
    };
    EXPECT_EQ(skippedOf({0x01}), 0U);
    EXPECT_EQ(skippedOf({0x01, 0x00}), 0U);
    EXPECT_EQ(skippedOf({0x55}), 1U);
    EXPECT_EQ(skippedOf({0x01, 0x55}), 2U);
    EXPECT_EQ(skippedOf({0x01, 0x55, 0x01}), 2U);
    EXPECT_EQ(skippedOf({0x00, 0x01, 0x01, 0x00, 0x55}), 2U);
}

TEST(StreamParser, ClearForgetsEverything) {
    StreamParser parser;
    parser.Append(ByteView(Ack(1)).first(20));
    parser.Clear();
    EXPECT_FALSE(parser.IsInsidePacket());
    parser.Append(Ack(2));
    EXPECT_EQ(RequestIds(parser), std::vector<std::uint16_t>{2});
}

TEST(StreamParser, NeverInventsAPacketFromNoise) {
    std::mt19937 random(4711);
    StreamParser parser;
    for (unsigned round = 0; round < 3000; ++round) {
        parser.Append(Noise(random, round % 97));
        EXPECT_FALSE(parser.Next());
        EXPECT_GT(parser.BytesNeeded(), 0u);
        EXPECT_LE(parser.BytesNeeded(), kMaxPacketSize);
    }
}

TEST(StreamParser, FindsEveryGoodPacketBetweenNoise) {
    std::mt19937 random(1234);
    for (int round = 0; round < 300; ++round) {
        Bytes bytes;
        std::vector<std::uint16_t> expected;
        for (std::uint16_t id = 1; id <= 10; ++id) {
            Append(bytes, Noise(random, random() % 60));
            Append(bytes, Ack(id, random() % (kMaxScdSize + 1)));
            expected.push_back(id);
        }
        StreamParser parser;
        std::vector<std::uint16_t> found;
        for (std::size_t at = 0; at < bytes.size();) {
            const std::size_t size = std::min<std::size_t>(1 + random() % 700, bytes.size() - at);
            parser.Append(ByteView(bytes).subspan(at, size));
            at += size;
            std::ranges::copy(RequestIds(parser), std::back_inserter(found));
        }
        EXPECT_EQ(found, expected) << "round " << round;
    }
}

TEST(StreamParser, FindsTheNextGoodPacketBehindADamagedOne) {
    std::mt19937 random(99);
    for (int round = 0; round < 2000; ++round) {
        Bytes bytes = Ack(5, 1 + random() % 300);
        const std::size_t at = random() % bytes.size();
        if (random() % 2)
            bytes[at] ^= static_cast<std::uint8_t>(1u << (random() % 8));
        else
            bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at));
        Append(bytes, Ack(2, 300));
        StreamParser parser;
        parser.Append(bytes);
        auto found = RequestIds(parser);
        if (found.empty()) {  // the damaged one still waits for bytes that the line lost
            parser.GiveUpPartial();
            found = RequestIds(parser);
        }
        EXPECT_EQ(found, std::vector<std::uint16_t>{2}) << "round " << round;
    }
}

}  // namespace
