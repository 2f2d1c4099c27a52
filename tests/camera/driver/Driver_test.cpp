/* SPDX-License-Identifier: Apache-2.0 */
#include "Driver.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "Rig.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using std::chrono::milliseconds;

struct DriverTest : testing::Test, Rig {
    Driver driver{clock};
};

TEST_F(DriverTest, CookiesAreNeverZeroAndDistinct) {
    const auto first = driver.Probe(serial, "Marlow", kTimeout);
    const auto second = driver.Probe(serial, "Marlow", kTimeout);
    EXPECT_NE(first.cookie, 0u);
    EXPECT_NE(second.cookie, 0u);
    EXPECT_NE(first.cookie, second.cookie);
    EXPECT_EQ(first.deviceId, "Marlow#Heron#H2048#2.0#21790042");
}

TEST_F(DriverTest, UnknownCookiesAreRefused) {
    EXPECT_EQ(CodeOf([&] { driver.Get(0); }), CLProtocol::CLP_INVALID_COOKIE);
    const auto found = driver.Probe(serial, "Marlow", kTimeout);
    driver.Disconnect(found.cookie);
    EXPECT_EQ(CodeOf([&] { driver.Get(found.cookie); }), CLProtocol::CLP_INVALID_COOKIE);
    EXPECT_EQ(CodeOf([&] { driver.Disconnect(found.cookie); }), CLProtocol::CLP_INVALID_COOKIE);
}

TEST_F(DriverTest, DisconnectingLeavesTheBaudRate) {
    const auto found = driver.Probe(serial, "Marlow", kTimeout);
    driver.Get(found.cookie)->SetRate(serial, 0x80, kTimeout);
    driver.Disconnect(found.cookie);
    EXPECT_EQ(camera.Rate(), 0x80u);
}

TEST_F(DriverTest, FailedProbeLeavesNoConnection) {
    camera.isSilent = true;
    EXPECT_EQ(CodeOf([&] { driver.Probe(serial, "Marlow", kTimeout); }), kNoAnswer);
    EXPECT_EQ(CodeOf([&] { driver.Get(1); }), CLProtocol::CLP_INVALID_COOKIE);
}

TEST_F(DriverTest, RequestOfAnotherDriverDoesNotTouchTheLine) {
    EXPECT_EQ(CodeOf([&] { driver.Probe(serial, "Acme", kTimeout); }), CLProtocol::CLP_INVALID_DEVICEID);
    EXPECT_EQ(serial.reads, 0u);
    EXPECT_TRUE(serial.ratesSet.empty());
}

TEST_F(DriverTest, StopEndsAProbeThatRuns) {
    camera.isSilent = true;
    serial.onRead = [&](CLUINT32 timeoutMs) {
        if (timeoutMs > 0)
            driver.StopProbing();
    };
    EXPECT_EQ(CodeOf([&] { driver.Probe(serial, "Marlow", kTimeout); }), kProbeStopped);
    EXPECT_LE(Elapsed(), milliseconds(100));
}

TEST_F(DriverTest, StopDoesNotKeepLaterProbesFromRunning) {
    driver.StopProbing();
    EXPECT_NO_THROW(driver.Probe(serial, "Marlow", kTimeout));
}

TEST_F(DriverTest, StopDoesNotDisturbAnOpenConnection) {
    const auto found = driver.Probe(serial, "Marlow", kTimeout);
    driver.StopProbing();
    Bytes data(4);
    driver.Get(found.cookie)->Read(serial, 0, data, kTimeout);
    EXPECT_EQ(data, (Bytes{0, 1, 0, 3}));
}

TEST_F(DriverTest, CloseForgetsEverything) {
    const auto found = driver.Probe(serial, "Marlow", kTimeout);
    driver.Errors().Remember(0, -30209, "special");
    driver.Close();
    EXPECT_EQ(CodeOf([&] { driver.Get(found.cookie); }), CLProtocol::CLP_INVALID_COOKIE);
    EXPECT_EQ(driver.ErrorText(-30209, 0), "No camera answers.");
}

TEST_F(DriverTest, CloseForgetsWhichCamerasThereWere) {
    const auto packetsOfAProbe = [&] {
        camera.commandPackets = 0;
        driver.Probe(serial, "Marlow#Heron#H2048#2.0#21790042", kTimeout);
        return camera.commandPackets;
    };
    const std::size_t fresh = packetsOfAProbe();
    EXPECT_LT(packetsOfAProbe(), fresh);
    driver.Close();
    EXPECT_EQ(packetsOfAProbe(), fresh);
}

TEST_F(DriverTest, TextOfACodeIsTheFailuresOwnOrGeneral) {
    EXPECT_EQ(driver.ErrorText(-20103, 0), "The cookie stands for no connection.");
    driver.Errors().Remember(7, -20103, "special");
    EXPECT_EQ(driver.ErrorText(-20103, 7), "special");
    EXPECT_EQ(CodeOf([&] { driver.ErrorText(-10003, 0); }), CL_ERR_ERROR_NOT_FOUND);
}

TEST(DriverThreads, ConnectionsWorkBesideEachOther) {
    VirtualClock shared;
    Driver driver(shared);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&driver, i] {
            VirtualClock clock;
            ModelCamera camera(clock);
            camera.SetText(gencp::abrm::kSerialNumber, std::to_string(i));
            VirtualLine serial(clock, camera);
            for (int round = 0; round < 20; ++round) {
                const auto found = driver.Probe(serial, "Marlow", kTimeout);
                EXPECT_EQ(found.deviceId, "Marlow#Heron#H2048#2.0#" + std::to_string(i));
                const auto connection = driver.Get(found.cookie);
                EXPECT_TRUE(
                    connection->Write(serial, kScratchAddress, Bytes(4, static_cast<std::uint8_t>(i)), kTimeout));
                Bytes data(4);
                connection->Read(serial, kScratchAddress, data, kTimeout);
                EXPECT_EQ(data, Bytes(4, static_cast<std::uint8_t>(i)));
                driver.Disconnect(found.cookie);
            }
        });
    for (auto& thread : threads)
        thread.join();
}

TEST(DriverThreads, CallsOnOneConnectionRunOneAfterTheOther) {
    VirtualClock clock;
    ModelCamera camera(clock);
    VirtualLine serial(clock, camera);
    Driver driver(clock);
    const auto connection = driver.Get(driver.Probe(serial, "Marlow", kTimeout).cookie);
    std::vector<std::thread> threads;
    for (std::uint64_t i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            const std::uint64_t address = kScratchAddress + 4 * i;
            for (std::uint32_t round = 0; round < 50; ++round) {
                Bytes value(4);
                gencp::Store32(value, 0, round);
                connection->Write(serial, address, value, kTimeout);
                Bytes data(4);
                connection->Read(serial, address, data, kTimeout);
                EXPECT_EQ(data, value);
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(camera.writes.size(), 200u);
}

}  // namespace
