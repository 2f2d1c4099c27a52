/* SPDX-License-Identifier: Apache-2.0 */
#include "CameraMemory.h"

#include <gtest/gtest.h>

#include <numeric>

#include "Rig.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using std::chrono::milliseconds;

struct CameraMemoryTest : testing::Test, MemoryRig {
    Bytes Pattern(std::size_t size) {
        Bytes bytes(size);
        std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
        return bytes;
    }
    Bytes Read(std::size_t size) {
        Bytes bytes(size);
        memory.Read(kScratchAddress, bytes);
        return bytes;
    }
    std::size_t FirstReadLength() const { return gencp::Load16(camera.received.at(0).scd, 10); }
};

TEST_F(CameraMemoryTest, BlocksAreAsLargeAsAPacket) {
    SetRate(0x80);
    camera.SetBytes(kScratchAddress, Pattern(3000));
    EXPECT_EQ(Read(3000), Pattern(3000));
    EXPECT_EQ(camera.received.size(), 3u);
    EXPECT_EQ(FirstReadLength(), 1008u);
}

TEST_F(CameraMemoryTest, BlocksFitTheTimeoutAtASlowRate) {
    camera.SetBytes(kScratchAddress, Pattern(3000));
    EXPECT_EQ(Read(3000), Pattern(3000));
    // (400 - 50 - 10) ms at 9600 baud are 326 bytes, 44 of them headers and address.
    EXPECT_EQ(FirstReadLength(), 280u);
    EXPECT_EQ(camera.received.size(), 11u);
}

TEST_F(CameraMemoryTest, SlowDeviceMakesBlocksSmaller) {
    SetRate(0x10);
    memory.SetResponseTime(milliseconds(300));
    Read(3000);
    EXPECT_EQ(FirstReadLength(), 992u);
}

TEST_F(CameraMemoryTest, HopelessTimeoutStillAsksForARegister) {
    memory.SetTimeout(milliseconds(60));
    EXPECT_EQ(Read(8).size(), 8u);
    EXPECT_EQ(FirstReadLength(), 4u);
}

TEST_F(CameraMemoryTest, WritesInBlocksAsLargeAsAPacket) {
    SetRate(0x80);
    EXPECT_TRUE(memory.Write(kScratchAddress, Pattern(2500)));
    EXPECT_EQ(camera.GetBytes(kScratchAddress, 2500), Pattern(2500));
    ASSERT_EQ(camera.writes.size(), 3u);
    EXPECT_EQ(camera.writes[0].second.size(), 1000u);
}

TEST_F(CameraMemoryTest, NothingToReadOrWriteIsNothing) {
    EXPECT_TRUE(Read(0).empty());
    EXPECT_TRUE(memory.Write(kScratchAddress, {}));
    EXPECT_TRUE(camera.received.empty());
}

TEST_F(CameraMemoryTest, AnswerOfAnotherLengthIsAFailure) {
    for (const std::size_t size : {0u, 3u, 5u, 100u}) {
        camera.answer = [&](const gencp::Packet& command) {
            return gencp::BuildAcknowledge(0x0801, 0, command.header.requestId, Bytes(size));
        };
        EXPECT_EQ(CodeOf([&] { Read(4); }), kBadAcknowledge) << size;
    }
}

TEST_F(CameraMemoryTest, WriteMayBeAcknowledgedWithNothing) {
    camera.answer = [](const gencp::Packet& command) {
        return gencp::BuildAcknowledge(0x0803, 0, command.header.requestId, {});
    };
    EXPECT_TRUE(memory.Write(kScratchAddress, Bytes(4)));
}

TEST_F(CameraMemoryTest, WriteOfAPartIsAFailure) {
    camera.answer = [](const gencp::Packet& command) {
        return gencp::BuildAcknowledge(0x0803, 0, command.header.requestId, Bytes{0, 0, 0, 3});
    };
    EXPECT_EQ(TextOf([&] { memory.Write(kScratchAddress, Bytes(4)); }),
              "The camera carried out writing 4 bytes at 0x40000 for 3 bytes only.");
}

TEST_F(CameraMemoryTest, WriteAcknowledgeOfAnotherLengthIsAFailure) {
    camera.answer = [](const gencp::Packet& command) {
        return gencp::BuildAcknowledge(0x0803, 0, command.header.requestId, Bytes(7));
    };
    EXPECT_EQ(CodeOf([&] { memory.Write(kScratchAddress, Bytes(4)); }), kBadAcknowledge);
}

TEST_F(CameraMemoryTest, RangesAreReadTogetherWhereTheDeviceCan) {
    memory.SetCanStack(true);
    camera.SetBytes(kScratchAddress, Pattern(100));
    const auto blocks = memory.ReadAll(std::vector<gencp::MemoryRange>{{kScratchAddress, 4}, {kScratchAddress + 8, 2}});
    EXPECT_EQ(blocks, (std::vector<Bytes>{{1, 2, 3, 4}, {9, 10}}));
    ASSERT_EQ(camera.received.size(), 1u);
    EXPECT_EQ(camera.received[0].header.command, gencp::kReadMemStacked);
}

TEST_F(CameraMemoryTest, RangesAreReadOneByOneWhereItCannot) {
    const auto blocks = memory.ReadAll(std::vector<gencp::MemoryRange>{{kScratchAddress, 4}, {kScratchAddress + 8, 2}});
    EXPECT_EQ(blocks.size(), 2u);
    EXPECT_EQ(camera.received.size(), 2u);
}

TEST_F(CameraMemoryTest, DeviceThatClaimsStacksButRefusesThemIsReadOneByOne) {
    memory.SetCanStack(true);
    camera.SetCapability(0);
    const std::vector<gencp::MemoryRange> ranges{{kScratchAddress, 4}, {kScratchAddress + 8, 2}};
    EXPECT_EQ(memory.ReadAll(ranges).size(), 2u);
    EXPECT_EQ(camera.received.size(), 3u);
    memory.ReadAll(ranges);
    EXPECT_EQ(camera.received.size(), 5u);
}

TEST_F(CameraMemoryTest, StacksAreSplitByTheTimeout) {
    memory.SetCanStack(true);
    const std::vector<gencp::MemoryRange> ranges(20, {kScratchAddress, 60});
    const auto blocks = memory.ReadAll(ranges);
    EXPECT_EQ(blocks.size(), 20u);
    EXPECT_GT(camera.received.size(), 4u);
    EXPECT_LT(camera.received.size(), 11u);
}

TEST_F(CameraMemoryTest, LargeRangesAreReadInBlocks) {
    memory.SetCanStack(true);
    const auto blocks = memory.ReadAll(std::vector<gencp::MemoryRange>{{kScratchAddress, 600}, {kScratchAddress, 4}});
    EXPECT_EQ(blocks[0].size(), 600u);
    EXPECT_EQ(blocks[1].size(), 4u);
}

TEST_F(CameraMemoryTest, StackOfAnotherLengthIsAFailure) {
    memory.SetCanStack(true);
    camera.answer = [](const gencp::Packet& command) {
        return gencp::BuildAcknowledge(0x0807, 0, command.header.requestId, Bytes(5));
    };
    EXPECT_EQ(CodeOf([&] {
                  memory.ReadAll(std::vector<gencp::MemoryRange>{{kScratchAddress, 4}, {kScratchAddress + 8, 2}});
              }),
              kBadAcknowledge);
}

struct PendingWriteTest : CameraMemoryTest {
    PendingWriteTest() {
        camera.pendingAcks = 1;
        camera.pendingMs = 1000;
    }
};

TEST_F(PendingWriteTest, IsContinuedUntilItEnds) {
    ASSERT_FALSE(memory.Write(kScratchAddress, {{1, 2, 3, 4}}));
    EXPECT_FALSE(memory.ContinueWrite());
    EXPECT_TRUE(memory.ContinueWrite());
    EXPECT_EQ(camera.writes.size(), 1u);
    EXPECT_EQ(camera.received.size(), 1u);
    EXPECT_EQ(CodeOf([&] { memory.ContinueWrite(); }), kNoWritePending);
}

TEST_F(PendingWriteTest, ContinuesWithTheRestOfTheData) {
    SetRate(0x80);
    ASSERT_FALSE(memory.Write(kScratchAddress, Pattern(1500)));
    camera.pendingAcks = 0;
    while (!memory.ContinueWrite())
        continue;
    EXPECT_EQ(camera.GetBytes(kScratchAddress, 1500), Pattern(1500));
    EXPECT_EQ(camera.writes.size(), 2u);
}

TEST_F(PendingWriteTest, KeepsOtherAccessesOut) {
    ASSERT_FALSE(memory.Write(kScratchAddress, Bytes(4)));
    EXPECT_EQ(CodeOf([&] { Read(4); }), kWriteStillPending);
    EXPECT_EQ(CodeOf([&] { memory.Write(kScratchAddress, Bytes(4)); }), kWriteStillPending);
    EXPECT_TRUE(exchanger.IsInFlight());
}

TEST_F(PendingWriteTest, AbandonedWriteLeavesItsAcknowledgeToBeDropped) {
    ASSERT_FALSE(memory.Write(kScratchAddress, {{1, 2, 3, 4}}));
    memory.AbandonWrite();
    clock.Sleep(milliseconds(1000));
    EXPECT_EQ(Read(4), (Bytes{1, 2, 3, 4}));
}

TEST_F(PendingWriteTest, ThatFailsAtLastIsAFailure) {
    camera.acknowledgeFate = [](std::size_t i) { return i == 0 ? Fate::kArrives : Fate::kLost; };
    ASSERT_FALSE(memory.Write(kScratchAddress, Bytes(4)));
    EXPECT_FALSE(memory.ContinueWrite());
    EXPECT_EQ(CodeOf([&] {
                  while (!memory.ContinueWrite())
                      continue;
              }),
              CL_ERR_TIMEOUT);
    EXPECT_EQ(camera.writes.size(), 1u);
    EXPECT_FALSE(exchanger.IsInFlight());
}

}  // namespace
