/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of CCLPort: connecting and disconnecting
 */

#include "CLProtocol/CLPort.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

#include "CLPortFixture.h"
#include "CLProtocol/DeviceID.h"
#include "scripted/Scripted.h"

namespace {

using namespace clprotocol_test;
using CLProtocol::ISerial;

TEST_F(Port, ConnectsAndDisconnects) {
    CCLPort port;
    EXPECT_FALSE(port.IsConnected());
    EXPECT_EQ(port.GetAccessMode(), GenApi::NA);
    EXPECT_EQ(port.GetSerial(), nullptr);
    EXPECT_EQ(port.GetDeviceID(), "");
    Connect(port);
    EXPECT_TRUE(port.IsConnected());
    EXPECT_EQ(port.GetAccessMode(), GenApi::RW);
    EXPECT_EQ(port.GetDeviceID(), scripted::FullDeviceId(kCamera));
    EXPECT_EQ(driver.probedFor, kCamera);
    EXPECT_EQ(driver.lastTimeout, 500u);
    port.Disconnect();
    EXPECT_FALSE(port.IsConnected());
    EXPECT_FALSE(serial.Port(0).isOpen);
    EXPECT_EQ(driver.CountConnections(), 0u);
    port.Disconnect();
    Connect(port);
    EXPECT_TRUE(port.IsConnected());
}

TEST_F(Port, ConnectsOnce) {
    CCLPort port;
    Connect(port);
    EXPECT_THROW(Connect(port), GenICam::LogicalErrorException);
    EXPECT_TRUE(port.IsConnected());
    EXPECT_EQ(driver.CountConnections(), 1u);
}

TEST_F(Port, FreesAllWhenDestroyed) {
    {
        CCLPort port;
        Connect(port);
    }
    EXPECT_FALSE(serial.Port(0).isOpen);
    EXPECT_EQ(driver.CountConnections(), 0u);
}

TEST_F(Port, ConnectsByATemplate) {
    CCLPort port;
    Connect(port, "Marlow");
    EXPECT_EQ(port.GetDeviceID(), scripted::FullDeviceId(kCamera));
}

TEST_F(Port, RefusesAnotherCamera) {
    CCLPort port;
    EXPECT_EQ(CodeOf([&] { Connect(port, "Marlow#Heron#H2048#2"); }), -20101);
    driver.onProbe = [](ISerial*, const char*, char* id, std::uint32_t* size, std::uint32_t* cookie, std::uint32_t) {
        std::memcpy(id, kCamera, sizeof kCamera);
        *size = sizeof kCamera;
        *cookie = 0xfffffffe;
        return 0;
    };
    EXPECT_EQ(CodeOf([&] { Connect(port, "Marlow#Heron#H2048#2"); }), -20101);
    EXPECT_FALSE(port.IsConnected());
    EXPECT_FALSE(serial.Port(0).isOpen);
}

TEST_F(Port, ConnectsWhereOnlyOneSideNamesTheVersion) {
    serial.SetCamera(0, "Marlow#Heron#H2048#V2#1");
    driver.onProbe = [](ISerial*, const char*, char* id, std::uint32_t* size, std::uint32_t* cookie, std::uint32_t) {
        constexpr char kWithVersion[] = "Marlow#Heron#H2048#V2#1";
        std::memcpy(id, kWithVersion, sizeof kWithVersion);
        *size = sizeof kWithVersion;
        *cookie = 0xfffffffe;
        return 0;
    };
    driver.cookies[0xfffffffe] = "";
    CCLPort port;
    Connect(port);
    EXPECT_EQ(port.GetDeviceID(), scripted::FullDeviceId("Marlow#Heron#H2048#V2#1"));
}

TEST_F(Port, DisconnectsNothingAfterAProbeThatFailed) {
    driver.onProbe = [](ISerial*, const char*, char*, std::uint32_t*, std::uint32_t* cookie, std::uint32_t) {
        *cookie = 4711;
        return -10004;
    };
    CCLPort port;
    EXPECT_THROW(Connect(port), GenICam::GenericException);
    EXPECT_EQ(driver.CountCalls("clpProbeDevice"), 1u);
    EXPECT_EQ(driver.CountCalls("clpDisconnect"), 0u);
}

// A driver that answers with driver's folder and file name in front, as hosts write DeviceIDs.
void AnswerInFull(scripted::DriverScript& driver, const std::string& deviceId) {
    driver.cookies[0xfffffffe] = "";
    driver.onProbe = [deviceId](ISerial*, const char*, char* id, std::uint32_t* size, std::uint32_t* cookie,
                                std::uint32_t) {
        *size = static_cast<std::uint32_t>(deviceId.size() + 1);
        std::memcpy(id, deviceId.c_str(), *size);
        *cookie = 0xfffffffe;
        return 0;
    };
}

TEST_F(Port, TakesAFullDeviceIdOfADriver) {
    AnswerInFull(driver, "/elsewhere#libOther.so#Marlow#Heron#H2048#V2#1");
    EXPECT_EQ(Probe(), scripted::FullDeviceId("Marlow#Heron#H2048#V2#1"));
    AnswerInFull(driver, "/elsewhere#libOther.so#Marlow#Heron#H2048#V2#1");
    CCLPort port;
    Connect(port, "Marlow#Heron#H2048#V2#1");
    EXPECT_EQ(port.GetDeviceID(), scripted::FullDeviceId("Marlow#Heron#H2048#V2#1"));
    EXPECT_EQ(driver.CountConnections(), 1u);
}

TEST_F(Port, KeepsSerialNumbersThatAreNoNames) {
    for (const std::string serialNumber : {"17-A/3", "4711.so", "%s 1", "\xc3\xa4", "0x1;:@$(PATH)"}) {
        const std::string camera = "Marlow#Heron#H2048#1.0.3-rc#" + serialNumber;
        serial.SetCamera(0, camera);
        ASSERT_EQ(Probe(), scripted::FullDeviceId(camera));
        CCLPort port;
        port.Connect(kPort, Probe());
        EXPECT_EQ(driver.probedFor, camera);
        EXPECT_EQ(port.GetDeviceID(), scripted::FullDeviceId(camera));
        EXPECT_EQ(CLProtocol::CDeviceID(port.GetDeviceID()).GetCameraSerialNumber(), serialNumber);
    }
}

TEST_F(Port, ConnectsThroughALocationThatNamesTheSystemsFolder) {
    const std::string folder = scripted::DriverLocation() + "/" + scripted::SystemFolder();
    const std::string full = folder + "#" + scripted::DriverFileName() + "#" + kCamera;
    CCLPort port;
    port.Connect(kPort, full);
    EXPECT_EQ(port.GetDeviceID(), full);
}

TEST_F(Port, IsNotConnectedAfterAFailure) {
    serial.SetCamera(0, "");
    CCLPort port;
    EXPECT_EQ(CodeOf([&] { Connect(port); }), -10004);
    EXPECT_FALSE(port.IsConnected());
    EXPECT_FALSE(serial.Port(0).isOpen);
    serial.SetCamera(0, kCamera);
    Connect(port);
    EXPECT_TRUE(port.IsConnected());
}

TEST_F(Port, PassesOnThatAPortIsInUse) {
    CCLPort first;
    Connect(first);
    serial.errorTexts[-10003] = "held by process 17";
    EXPECT_EQ(CodeOf([] { Probe(); }), -10003);
    EXPECT_NE(TextOf([] { Probe(); }).find("held by process 17 (-10003)"), std::string::npos);
    EXPECT_EQ(CCLPort::ProbeDevice("Scripted#Port1", scripted::FullDeviceId("Marlow"), 100),
              scripted::FullDeviceId("Marlow#Heron#H4096#2"));
}

TEST_F(Port, ThrowsFromItsDestructorAndFreesAll) {
    driver.onDisconnect = [](std::uint32_t) { return -30003; };
    auto port = std::make_unique<CCLPort>();
    Connect(*port);
    EXPECT_EQ(CodeOf([&] { delete port.release(); }), -30003);
    EXPECT_FALSE(serial.Port(0).isOpen);
    CCLPort other;
    Connect(other);
    driver.onDisconnect = [](std::uint32_t) -> std::int32_t { throw 1; };
    EXPECT_THROW(other.Disconnect(), GenICam::RuntimeException);
    EXPECT_FALSE(other.IsConnected());
    EXPECT_FALSE(serial.Port(0).isOpen);
}

TEST_F(Port, DoesNotThrowFromItsDestructorDuringAnotherException) {
    driver.onDisconnect = [](std::uint32_t) { return -30003; };
    EXPECT_THROW(
        {
            CCLPort port;
            Connect(port);
            throw std::runtime_error("first");
        },
        std::runtime_error);
    EXPECT_FALSE(serial.Port(0).isOpen);
}

TEST_F(Port, FailedDisconnectAfterAProbeIsNoFailure) {
    driver.onDisconnect = [](std::uint32_t) { return -30003; };
    EXPECT_EQ(Probe(), scripted::FullDeviceId(kCamera));
    EXPECT_FALSE(serial.Port(0).isOpen);
}

}  // namespace
