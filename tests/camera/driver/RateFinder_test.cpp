/* SPDX-License-Identifier: Apache-2.0 */
#include "RateFinder.h"

#include <gtest/gtest.h>

#include "Rig.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using std::chrono::milliseconds;

struct RateFinderTest : testing::Test, Rig {
    SerialLine line{serial, clock};
    Exchanger exchanger{line, logger};
    CameraMemory memory{line, exchanger};

    CameraLimits Find(const RateHints& hints = {}) {
        memory.SetTimeout(kTimeout);
        return RateFinder(line, exchanger, memory, logger).Find(hints);
    }
};

TEST_F(RateFinderTest, FindsACameraAtEveryRate) {
    for (const auto& rate : gencp::kBaudRates) {
        camera.SetRate(rate.flag);
        EXPECT_EQ(Find().responseTime, milliseconds(50));
        EXPECT_EQ(line.Rate().flag, rate.flag);
    }
}

TEST_F(RateFinderTest, BeginsAt9600) {
    Find();
    EXPECT_EQ(serial.ratesSet, std::vector<CLUINT32>{0x01});
    EXPECT_EQ(camera.received.size(), 1u);
    EXPECT_EQ(camera.received[0].header.requestId, 0);
}

TEST_F(RateFinderTest, GoesOnFromTheFastestDown) {
    camera.SetRate(0x20);
    Find();
    EXPECT_EQ(serial.ratesSet, (std::vector<CLUINT32>{0x01, 0x80, 0x40, 0x20}));
}

TEST_F(RateFinderTest, HintsComeFirst) {
    camera.isSilent = true;
    EXPECT_EQ(CodeOf([&] { Find({0x04, 0x40, {}}); }), kNoAnswer);
    serial.ratesSet.resize(4);
    EXPECT_EQ(serial.ratesSet, (std::vector<CLUINT32>{0x04, 0x40, 0x01, 0x80}));
}

TEST_F(RateFinderTest, TriesOnlyWhatTheHostSupports) {
    serial.supported = 0x14;
    camera.SetRate(0x04);
    Find({0x80, 0x80, {}});
    EXPECT_EQ(serial.ratesSet, (std::vector<CLUINT32>{0x10, 0x04}));
}

TEST_F(RateFinderTest, SilenceIsAFailureThatNamesTheRates) {
    camera.isSilent = true;
    const auto find = [&] { Find(); };
    EXPECT_EQ(TextOf(find),
              "No camera answers. Baud rates tried: 9600, 921600, 460800, 230400, 115200, 57600, 38400, 19200.");
    EXPECT_EQ(CodeOf(find), -30209);
}

TEST_F(RateFinderTest, SilentPortCostsLittleMoreThanASecond) {
    camera.isSilent = true;
    EXPECT_EQ(CodeOf([&] { Find(); }), kNoAnswer);
    EXPECT_LE(Elapsed(), milliseconds(1100));
}

TEST_F(RateFinderTest, SilentPortOfOneRateIsGivenUpWhenTheSlowestCameraWouldHaveAnswered) {
    serial.supportedCode = CL_ERR_FUNCTION_NOT_FOUND;
    camera.isSilent = true;
    EXPECT_EQ(CodeOf([&] { Find(); }), kNoAnswer);
    EXPECT_GE(Elapsed(), milliseconds(400));
    EXPECT_LE(Elapsed(), milliseconds(500));
}

TEST_F(RateFinderTest, SlowCameraIsFoundWhereThereIsOneRateOnly) {
    serial.supportedCode = CL_ERR_FUNCTION_NOT_FOUND;
    camera.responseDelay = milliseconds(290);
    EXPECT_EQ(Find().responseTime, milliseconds(50));
}

TEST_F(RateFinderTest, AsksForTheResponseTimeFirst) {
    Find();
    ASSERT_EQ(camera.received.size(), 1u);
    EXPECT_EQ(camera.received[0].scd, (Bytes{0, 0, 0, 0, 0, 0, 0x01, 0xC4, 0, 0, 0, 12}));
}

TEST_F(RateFinderTest, TellsWhatTheCameraCan) {
    camera.SetNumber(gencp::abrm::kMaxDeviceResponseTime, 120);
    camera.SetCapability(0x2200);
    EXPECT_EQ(Find(), (CameraLimits{0x2200, milliseconds(120)}));
}

TEST_F(RateFinderTest, TakesTheStandardsBoundForAResponseTimeOutOfRange) {
    for (const auto& [said, taken] : {std::pair(0, 300), {1, 1}, {299, 299}, {300, 300}, {301, 300}, {100000, 300}}) {
        camera.SetNumber(gencp::abrm::kMaxDeviceResponseTime, static_cast<std::uint64_t>(said));
        EXPECT_EQ(Find().responseTime, milliseconds(taken)) << said;
    }
}

TEST_F(RateFinderTest, RateThatWasJustAskedComesWithTheLikelyOnesOnly) {
    camera.isSilent = true;
    EXPECT_EQ(CodeOf([&] { Find({0x20, {}, 0x20}); }), kNoAnswer);
    EXPECT_EQ(serial.ratesSet, (std::vector<CLUINT32>{0x01, 0x80, 0x40, 0x10, 0x08, 0x04, 0x02, 0x20, 0x01}));
}

TEST_F(RateFinderTest, LooksAt9600OnceMoreBeforeGivingUp) {
    camera.SetRate(0x10);
    camera.commandFate = [&](std::size_t i) {
        if (i == 1)
            camera.SetRate(0x01);  // too many framing errors
        return Fate::kLost;
    };
    EXPECT_EQ(CodeOf([&] { Find(); }), kNoAnswer);
    EXPECT_EQ(serial.ratesSet.front(), 0x01u);
    EXPECT_EQ(serial.ratesSet.back(), 0x01u);
    EXPECT_EQ(camera.commandPackets, 3u);
}

TEST_F(RateFinderTest, OneLostPacketDoesNotHideACamera) {
    for (const std::uint32_t flag : {0x01u, 0x10u, 0x80u}) {
        camera.SetRate(flag);
        camera.commandPackets = 0;
        camera.commandFate = [](std::size_t i) { return i == 0 ? Fate::kLost : Fate::kArrives; };
        EXPECT_EQ(Find().responseTime, milliseconds(50));
        EXPECT_EQ(line.Rate().flag, flag);
    }
}

TEST_F(RateFinderTest, SlowCameraIsFoundAtAnyRate) {
    camera.responseDelay = milliseconds(290);
    for (const auto& rate : gencp::kBaudRates) {
        camera.SetRate(rate.flag);
        SCOPED_TRACE(rate.bitsPerSecond);
        EXPECT_EQ(Find().responseTime, milliseconds(50));
        EXPECT_EQ(line.Rate().flag, rate.flag);
    }
}

TEST_F(RateFinderTest, RateThatTheLibraryRefusesIsLeftOut) {
    serial.refusedRates = 0xC0;
    camera.SetRate(0x20);
    EXPECT_EQ(Find().responseTime, milliseconds(50));
    camera.isSilent = true;
    EXPECT_EQ(TextOf([&] { Find(); }).find("921600"), std::string::npos);
}

TEST_F(RateFinderTest, TellsWhenSomethingWasReceived) {
    camera.isSilent = true;
    serial.AddStray(Bytes(100, 0x5A));
    EXPECT_NE(TextOf([&] { Find(); }).find("Something was received."), std::string::npos);
}

TEST_F(RateFinderTest, AsksPatientlyAtOnceWhereSomethingWasReceived) {
    camera.isSilent = true;
    serial.AddStray({1, 2, 3});
    EXPECT_EQ(CodeOf([&] { Find(); }), kNoAnswer);
    EXPECT_EQ(serial.ratesSet.size(), 2 * gencp::kBaudRates.size());
}

TEST_F(RateFinderTest, FailingLibraryEndsTheSearch) {
    serial.readCode = CL_ERR_INVALID_REFERENCE;
    EXPECT_EQ(CodeOf([&] { Find(); }), CL_ERR_INVALID_REFERENCE);
    EXPECT_EQ(serial.reads, 1u);
}

}  // namespace
