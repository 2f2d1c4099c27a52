/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a camera says of a command: refused, busy, pending
 */

#include "Exchanger.h"

#include <gtest/gtest.h>

#include "ExchangerFixture.h"
#include "Rig.h"
#include "gencp/Memory.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using gencp::Load32;
using std::chrono::milliseconds;

TEST_F(ExchangerTest, ErrorStatusIsAFailureWithItsName) {
    const auto fail = [&] { memory.Read(gencp::Register{0x999999, 4}); };
    EXPECT_EQ(CodeOf(fail), kStatusCodes - 3);
    EXPECT_EQ(TextOf(fail), "The camera refused reading 4 bytes at 0x999999: invalid address (GenCP status 0x8003).");
}

TEST_F(ExchangerTest, WarningStatusIsASuccess) {
    camera.answer = [](const gencp::Packet& command) {
        return gencp::BuildAcknowledge(0x0801, 0x2001, command.header.requestId, Bytes{0, 1, 0, 2});
    };
    EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010002u);
}

TEST_F(ExchangerTest, BusyCameraIsAskedAgainWithANewId) {
    int refusals = 2;
    camera.answer = [&](const gencp::Packet& command) -> std::optional<Bytes> {
        if (refusals-- <= 0)
            return std::nullopt;
        return gencp::BuildAcknowledge(0x0803, gencp::kStatusBusy, command.header.requestId, {});
    };
    EXPECT_TRUE(memory.Write(kScratchAddress, {{1, 2, 3, 4}}));
    EXPECT_EQ(ReceivedIds(), (std::vector<std::uint16_t>{1, 2, 3}));
    for (const auto& command : camera.received)
        EXPECT_FALSE(command.header.IsResend());
    EXPECT_EQ(camera.writes.size(), 1u);
}

TEST_F(ExchangerTest, CameraThatStaysBusyIsAFailure) {
    camera.answer = [](const gencp::Packet& command) {
        return gencp::BuildAcknowledge(0x0801, gencp::kStatusBusy, command.header.requestId, {});
    };
    EXPECT_EQ(CodeOf([&] { ReadVersion(); }), kStatusCodes - 7);
    EXPECT_EQ(camera.received.size(), 4u);
}

TEST_F(ExchangerTest, CameraThatRefusesForNowGetsAMoment) {
    for (const std::uint16_t status : {gencp::kStatusBusy, gencp::kStatusMessageTimeout, gencp::kStatusInvalidHeader}) {
        std::vector<Time> asked;
        camera.responseDelay = {};
        camera.answer = [&](const gencp::Packet& command) {
            asked.push_back(clock.Now());
            return gencp::BuildAcknowledge(0x0801, status, command.header.requestId, {});
        };
        EXPECT_EQ(CodeOf([&] { ReadVersion(); }), kStatusCodes - (status & 0xFFF));
        ASSERT_EQ(asked.size(), 4u);
        const Duration onLine = gencp::TransferTime(28 + 16, 9600);
        for (std::size_t i = 1; i < asked.size(); ++i)
            EXPECT_GE(asked[i] - asked[i - 1], onLine + milliseconds(20));
        for (std::size_t i = 1; i < asked.size(); ++i)
            EXPECT_LT(asked[i] - asked[i - 1], onLine + milliseconds(21));
    }
}

TEST_F(ExchangerTest, RefusalForGoodIsNotAskedForAgain) {
    for (const std::uint16_t status : {gencp::kStatusInvalidParameter, gencp::kStatusWriteProtected,
                                       gencp::kStatusAccessDenied, gencp::kStatusGenericError}) {
        camera.received.clear();
        camera.answer = [&](const gencp::Packet& command) {
            return gencp::BuildAcknowledge(0x0801, status, command.header.requestId, {});
        };
        EXPECT_EQ(CodeOf([&] { ReadVersion(); }), CodeOfStatus(status));
        EXPECT_EQ(camera.received.size(), 1u);
    }
}

TEST_F(ExchangerTest, PendingAcknowledgesExtendTheTime) {
    camera.pendingAcks = 5;
    camera.pendingMs = 60;
    memory.WriteOnce(kScratchAddress, Bytes(4), memory.UsualTiming());
    EXPECT_EQ(camera.received.size(), 1u);
    EXPECT_GE(Elapsed(), milliseconds(300));
}

TEST_F(ExchangerTest, PendingAcknowledgeOfAnotherCommandIsDropped) {
    serial.AddStray(gencp::BuildAcknowledge(gencp::kPendingAck, 0, 0x55, gencp::EncodePendingAck(0xFFFF)));
    camera.isSilent = true;
    const Time begin = clock.Now();
    EXPECT_EQ(CodeOf([&] { ReadVersion(); }), CL_ERR_TIMEOUT);
    EXPECT_LE(clock.Now() - begin, 4 * kTimeout);
}

TEST_F(ExchangerTest, LostAcknowledgeAfterAPendingOneIsAskedForAgain) {
    camera.pendingAcks = 1;
    camera.acknowledgeFate = [](std::size_t i) { return i == 1 ? Fate::kLost : Fate::kArrives; };
    memory.WriteOnce(kScratchAddress, Bytes(4), memory.UsualTiming());
    EXPECT_EQ(camera.writes.size(), 1u);
    EXPECT_EQ(camera.received.size(), 2u);
}

TEST_F(ExchangerTest, CameraThatIsPendingForEverIsAFailure) {
    camera.answer = [](const gencp::Packet& command) {
        return gencp::BuildAcknowledge(gencp::kPendingAck, 0, command.header.requestId,
                                       gencp::EncodePendingAck(0xFFFF));
    };
    const Time begin = clock.Now();
    EXPECT_EQ(TextOf([&] { ReadVersion(); }), "The camera calls reading 4 bytes at 0x0 pending for more than 1000 ms.");
    EXPECT_GE(clock.Now() - begin, milliseconds(1000));
    EXPECT_LE(clock.Now() - begin, milliseconds(1100));
    EXPECT_EQ(CodeOf([&] {
                  if (!memory.Write(kScratchAddress, Bytes(4)))
                      while (!memory.ContinueWrite())
                          continue;
              }),
              kStaysPending);
    EXPECT_GE(clock.Now() - begin, std::chrono::seconds(31));
    EXPECT_LE(clock.Now() - begin, std::chrono::seconds(32));
}

TEST_F(ExchangerTest, PendingAcknowledgeOfWrongSizeIsIgnored) {
    camera.answer = [](const gencp::Packet& command) {
        return gencp::BuildAcknowledge(gencp::kPendingAck, 0, command.header.requestId, Bytes(3));
    };
    EXPECT_EQ(CodeOf([&] { ReadVersion(); }), CL_ERR_TIMEOUT);
    EXPECT_LE(Elapsed(), std::chrono::seconds(2));
}

}  // namespace
