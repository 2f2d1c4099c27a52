/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Opening a camera that was open before
 */

#include "Connection.h"

#include <gtest/gtest.h>

#include "ConnectionFixture.h"
#include "Rig.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using std::chrono::milliseconds;

TEST_F(ConnectionTest, KnownCameraIsOpenedAgainWithOneShortExchange) {
    OpenedAs();
    camera.received.clear();
    OpenedAs("Marlow#Heron#H2048#2.0#21790042");
    EXPECT_EQ(camera.received.size(), 1u);
}

TEST_F(ConnectionTest, KnownCameraOfAnotherVersionIsNoCamera) {
    OpenedAs();
    camera.SetNumber(gencp::abrm::kGenCpVersion, 0x00020000);
    EXPECT_EQ(CodeOf([&] { OpenedAs("Marlow#Heron#H2048#2.0#21790042"); }), CLProtocol::CLP_NO_DEVICE_FOUND);
}

TEST_F(ConnectionTest, KnownCameraThatCantStackIsOpenedAgainWithFiveExchanges) {
    camera.SetCapability(gencp::capability::kFamilyName);
    OpenedAs();
    camera.received.clear();
    OpenedAs("Marlow#Heron#H2048#2.0#21790042");
    EXPECT_EQ(camera.received.size(), 5u);
}

TEST_F(ConnectionTest, KnownCameraIsFoundAtItsLastRateAtOnce) {
    Open();
    connection.SetRate(serial, 0x20, kTimeout);
    serial.ratesSet.clear();
    VirtualLine other(clock, camera);  // a host makes a new line object for a new connection
    Connection fresh(other, clock, logger, known);
    fresh.Open(DeviceRequest("Marlow#Heron#H2048#2.0#21790042"), kTimeout, nullptr);
    EXPECT_EQ(other.ratesSet, std::vector<CLUINT32>{0x20});
}

TEST_F(ConnectionTest, LastRateOfALineIsTriedFirstForATemplate) {
    Open();
    connection.SetRate(serial, 0x20, kTimeout);
    serial.ratesSet.clear();
    OpenedAs("Marlow");
    EXPECT_EQ(serial.ratesSet, std::vector<CLUINT32>{0x20});
}

TEST_F(ConnectionTest, CameraThatFellBackTo9600IsFoundAgain) {
    Open();
    connection.SetRate(serial, 0x20, kTimeout);
    camera.SetRate(0x01);
    EXPECT_EQ(OpenedAs("Marlow#Heron#H2048#2.0#21790042"), "Marlow#Heron#H2048#2.0#21790042");
}

TEST_F(ConnectionTest, ChangedFirmwareOfAKnownCameraIsReadAfresh) {
    OpenedAs();
    camera.SetCapability(gencp::capability::kFamilyName);  // can't stack any more
    EXPECT_EQ(OpenedAs("Marlow#Heron#H2048#2.0#21790042"), "Marlow#Heron#H2048#2.0#21790042");
}

TEST_F(ConnectionTest, RateAfterAFailedChangeIsRememberedForTheNextOpen) {
    Open();
    connection.SetRate(serial, 0x10, kTimeout);
    camera.commandFate = [&](std::size_t) { return camera.Rate() == 0x80 ? Fate::kLost : Fate::kArrives; };
    EXPECT_EQ(CodeOf([&] { connection.SetRate(serial, 0x80, kTimeout); }), kBaudRateChangeFailed);
    camera.received.clear();
    OpenedAs("Marlow#Heron#H2048#2.0#21790042");
    EXPECT_EQ(camera.received.size(), 1u);
}

TEST_F(ConnectionTest, RateWhereTheCameraWasFoundAfterAFailedChangeIsRemembered) {
    Open();
    connection.SetRate(serial, 0x10, kTimeout);
    camera.commandFate = [&](std::size_t) {
        if (camera.Rate() == 0x80)
            camera.SetRate(0x01);
        return Fate::kArrives;
    };
    EXPECT_EQ(CodeOf([&] { connection.SetRate(serial, 0x80, kTimeout); }), kBaudRateChangeFailed);
    EXPECT_EQ(connection.Rate(serial, kTimeout), 0x01u);
    camera.received.clear();
    OpenedAs("Marlow#Heron#H2048#2.0#21790042");
    EXPECT_EQ(camera.received.size(), 1u);
}

TEST_F(ConnectionTest, CameraThatCanMoreThanBeforeIsReadAfresh) {
    camera.SetCapability(gencp::capability::kFamilyName | gencp::capability::kStackedCommands);
    OpenedAs();
    camera.SetCapability(gencp::capability::kFamilyName | gencp::capability::kStackedCommands |
                         gencp::capability::kSbrm);
    connection.Open(DeviceRequest("Marlow#Heron#H2048#2.0#21790042"), kTimeout, nullptr);
    connection.SetRate(serial, 0x80, kTimeout);
    EXPECT_EQ(camera.Rate(), 0x80u);
}

TEST_F(ConnectionTest, ResponseTimeOfAKnownCameraIsTheOneOfNow) {
    OpenedAs();
    camera.SetNumber(gencp::abrm::kMaxDeviceResponseTime, 300);
    Open("Marlow#Heron#H2048#2.0#21790042");
    camera.responseDelay = milliseconds(250);
    EXPECT_EQ(Read(0, 4), (Bytes{0, 1, 0, 3}));
    EXPECT_EQ(camera.received.back().header.IsResend(), false);
}

TEST_F(ConnectionTest, KnownCameraThatIsGoneIsGivenUpInLittleMoreThanASecond) {
    for (const std::uint32_t flag : {0x01u, 0x02u, 0x10u, 0x80u}) {
        camera.isSilent = false;
        Open();
        connection.SetRate(serial, flag, kTimeout);
        camera.isSilent = true;
        const Time begin = clock.Now();
        EXPECT_EQ(CodeOf([&] { OpenedAs("Marlow#Heron#H2048#2.0#21790042"); }), kNoAnswer);
        EXPECT_LT(clock.Now() - begin, milliseconds(1200)) << flag;
    }
}

TEST_F(ConnectionTest, CameraThatOnlyCallsCommandsPendingIsGivenUpInASecond) {
    camera.answer = [](const gencp::Packet& command) {
        return gencp::BuildAcknowledge(gencp::kPendingAck, 0, command.header.requestId,
                                       gencp::EncodePendingAck(0xFFFF));
    };
    EXPECT_EQ(CodeOf([&] { Open(); }), kStaysPending);
    EXPECT_LT(Elapsed(), milliseconds(1200));
}

TEST_F(ConnectionTest, AnotherCameraAtTheKnownRateIsFoundAtOnce) {
    OpenedAs();
    camera.SetText(gencp::abrm::kSerialNumber, "other");
    const Time begin = clock.Now();
    EXPECT_EQ(CodeOf([&] { OpenedAs("Marlow#Heron#H2048#2.0#21790042"); }), CLProtocol::CLP_NO_DEVICE_FOUND);
    EXPECT_LT(clock.Now() - begin, milliseconds(700));
}

}  // namespace
