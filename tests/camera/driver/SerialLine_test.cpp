/* SPDX-License-Identifier: Apache-2.0 */
#include "SerialLine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "Rig.h"
#include "clser/ClSerial.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using std::chrono::milliseconds;

struct SerialLineTest : testing::Test, Rig {
    SerialLine line{serial, clock};
    std::array<std::uint8_t, 16> buffer{};
    Time In(int ms) { return clock.Now() + milliseconds(ms); }
};

TEST_F(SerialLineTest, ReadsWhatWaits) {
    serial.AddStray({1, 2, 3});
    EXPECT_EQ(line.Read(std::span(buffer).first(3), In(100)), 3u);
    EXPECT_EQ(buffer[2], 3);
    EXPECT_EQ(line.ReceivedBytes(), 3u);
    EXPECT_EQ(Elapsed(), milliseconds(0));
}

TEST_F(SerialLineTest, ReadEndsAtTheDeadline) {
    EXPECT_EQ(line.Read(buffer, In(100)), 0u);
    EXPECT_EQ(Elapsed(), milliseconds(100));
}

TEST_F(SerialLineTest, ReadTakesWhatWaitsBehindTheDeadline) {
    serial.AddStray({7});
    EXPECT_EQ(line.Read(std::span(buffer).first(1), In(-50)), 1u);
}

TEST_F(SerialLineTest, LibraryThatIgnoresTimeoutsIsWaitedForAllTheSame) {
    serial.ignoresTimeouts = true;
    EXPECT_EQ(line.Read(buffer, In(20)), 0u);
    EXPECT_GE(Elapsed(), milliseconds(20));
    EXPECT_LE(serial.reads, 25u);  // no busy loop
}

TEST_F(SerialLineTest, LibraryThatTimesOutEarlyIsAskedAgain) {
    serial.readCode = CL_ERR_TIMEOUT;
    EXPECT_EQ(line.Read(buffer, In(20)), 0u);
    EXPECT_GE(Elapsed(), milliseconds(20));
}

TEST_F(SerialLineTest, FailuresOfTheLibraryCarryItsCode) {
    serial.readCode = CL_ERR_INVALID_REFERENCE;
    EXPECT_EQ(CodeOf([&] { line.Read(buffer, In(20)); }), CL_ERR_INVALID_REFERENCE);
    serial.writeCode = CL_ERR_PORT_IN_USE;
    EXPECT_EQ(CodeOf([&] { line.Write(buffer, In(20)); }), CL_ERR_PORT_IN_USE);
}

TEST_F(SerialLineTest, CountsThatCannotBeAreAFailure) {
    serial.claimsTooMuch = true;
    EXPECT_EQ(CodeOf([&] { line.Read(buffer, In(20)); }), kSerialNonsense);
    EXPECT_EQ(CodeOf([&] { line.Write(buffer, In(20)); }), kSerialNonsense);
}

TEST_F(SerialLineTest, WritesInPiecesUntilAllIsOut) {
    serial.mostPerCall = 5;
    EXPECT_TRUE(line.Write(gencp::BuildCommand(gencp::kReadMem, 0, gencp::Bytes(12)), In(100)));
    EXPECT_EQ(camera.received.size(), 1u);
}

TEST_F(SerialLineTest, WriteThatTimesOutGivesUpAtTheDeadline) {
    serial.writeCode = CL_ERR_TIMEOUT;
    EXPECT_FALSE(line.Write(buffer, In(20)));
    EXPECT_GE(Elapsed(), milliseconds(20));
}

TEST_F(SerialLineTest, WriteGoesOnBehindWhatATimeOutTook) {
    serial.takes = 7;
    const auto command = gencp::BuildCommand(gencp::kReadMem, 0, gencp::Bytes(12));
    EXPECT_TRUE(line.Write(command, In(100)));
    ASSERT_EQ(camera.received.size(), 1u);
}

TEST_F(SerialLineTest, WriteIsNotCutIntoPiecesByTheStopCheck) {
    line.SetStopCheck([] {});
    EXPECT_TRUE(line.Write(gencp::BuildCommand(gencp::kReadMem, 0, gencp::Bytes(12)), In(400)));
    EXPECT_EQ(serial.longestWrite, 400u);
}

TEST_F(SerialLineTest, TakeWaitingTakesEverythingAtOnce) {
    for (const std::size_t size : {0u, 1u, 5u, 255u, 700u}) {
        serial.AddStray(gencp::Bytes(size, 9));
        EXPECT_EQ(line.TakeWaiting().size(), size);
    }
    EXPECT_EQ(Elapsed(), milliseconds(0));
}

TEST_F(SerialLineTest, TakeWaitingEndsOnALineThatNeverFallsSilent) {
    serial.onRead = [&](CLUINT32) { serial.AddStray(gencp::Bytes(1000)); };
    EXPECT_LE(line.TakeWaiting().size(), 70'000u);
}

TEST_F(SerialLineTest, SupportedRatesAreTheKnownOnes) {
    serial.supported = 0xFFFFFF14;
    EXPECT_EQ(line.SupportedRates(), 0x14u);
}

TEST_F(SerialLineTest, LibraryWithoutRatesStaysAt9600) {
    serial.supportedCode = CL_ERR_FUNCTION_NOT_FOUND;
    EXPECT_EQ(line.SupportedRates(), 0x01u);
    line.SetRate(gencp::kStartBaudRate);
    EXPECT_TRUE(serial.ratesSet.empty());
    EXPECT_EQ(CodeOf([&] { line.SetRate(gencp::kBaudRates[4]); }), CL_ERR_BAUD_RATE_NOT_SUPPORTED);
}

TEST_F(SerialLineTest, RefusedRateLeavesTheOld) {
    serial.refusedRates = 0x10;
    line.SetRate(gencp::kBaudRates[1]);
    EXPECT_EQ(CodeOf([&] { line.SetRate(gencp::kBaudRates[4]); }), CL_ERR_BAUD_RATE_NOT_SUPPORTED);
    EXPECT_EQ(line.Rate().flag, 0x02u);
}

TEST_F(SerialLineTest, AnotherLineObjectGetsThePresentRate) {
    line.SetRate(gencp::kBaudRates[7]);
    VirtualLine other(clock, camera);
    line.Attach(other);
    EXPECT_EQ(other.ratesSet, std::vector<CLUINT32>{0x80});
    line.Attach(other);
    EXPECT_EQ(other.ratesSet.size(), 1u);
}

TEST_F(SerialLineTest, AnotherLineObjectHasRatesOfItsOwn) {
    EXPECT_EQ(line.SupportedRates(), 0xFFu);
    VirtualLine other(clock, camera);
    other.supported = 0x15;
    line.Attach(other);
    EXPECT_EQ(line.SupportedRates(), 0x15u);
    VirtualLine fixed(clock, camera);
    fixed.supportedCode = CL_ERR_FUNCTION_NOT_FOUND;
    line.Attach(fixed);
    EXPECT_EQ(line.SupportedRates(), 0x01u);
    EXPECT_TRUE(fixed.ratesSet.empty());
    line.Attach(other);
    line.SetRate(gencp::kBaudRates[4]);
    EXPECT_EQ(other.ratesSet.back(), 0x10u);
}

TEST_F(SerialLineTest, RefusedRateIsSupportedNoMore) {
    serial.refusedRates = 0x10;
    EXPECT_EQ(line.SupportedRates(), 0xFFu);
    EXPECT_EQ(CodeOf([&] { line.SetRate(gencp::kBaudRates[4]); }), CL_ERR_BAUD_RATE_NOT_SUPPORTED);
    EXPECT_EQ(line.SupportedRates(), 0xEFu);
    VirtualLine other(clock, camera);
    line.Attach(other);
    EXPECT_EQ(line.SupportedRates(), 0xFFu);
}

TEST_F(SerialLineTest, StopCheckEndsAWaitSoon) {
    bool isStopped = false;
    serial.onRead = [&](CLUINT32) { isStopped = true; };
    line.SetStopCheck([&] {
        if (isStopped)
            throw DriverError(kProbeStopped, "stopped");
    });
    EXPECT_EQ(CodeOf([&] { line.Read(buffer, In(10'000)); }), kProbeStopped);
    EXPECT_LE(Elapsed(), milliseconds(50));
}

}  // namespace
