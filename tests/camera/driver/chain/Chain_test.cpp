/* SPDX-License-Identifier: Apache-2.0 */
#include "Chain.h"

#include <gtest/gtest.h>

#include "gencp/BaudRate.h"
#include "gencp/ByteOrder.h"
#include "simulator/CameraRegisters.h"

namespace {

using namespace marlow::test;
using MarlowSim::CameraOptions;
namespace registers = MarlowSim::registers;

CameraOptions Options(const std::string& list) {
    CameraOptions options;
    options.serial = "4711";
    MarlowSim::SetOptions(options, list);
    return options;
}

std::vector<char> Number(std::uint32_t value) {
    std::vector<char> bytes(4);
    for (std::size_t i = 0; i < 4; ++i)
        bytes[i] = static_cast<char>(value >> (8 * (3 - i)));
    return bytes;
}

TEST(DriverChain, FindsACameraAndItsName) {
    Chain chain(Options("paced=on"));
    ASSERT_EQ(chain.Probe(), 0) << chain.LastError();
    EXPECT_EQ(chain.deviceId, "Marlow#Heron#H2048#2.0#4711");
}

TEST(DriverChain, FindsACameraWhereItWasLeft) {
    for (const auto& rate : gencp::kBaudRates) {
        Chain chain(Options("baud=" + std::to_string(rate.bitsPerSecond)));
        ASSERT_EQ(chain.Probe(), 0) << chain.LastError();
        EXPECT_EQ(chain.Rate(), rate.flag);
    }
}

TEST(DriverChain, ChangesTheRateOnBothSides) {
    Chain chain(Options("paced=on"));
    ASSERT_EQ(chain.Probe(), 0);
    for (const auto& rate : gencp::kBaudRates) {
        ASSERT_EQ(chain.SetRate(rate.flag), 0) << chain.LastError(chain.cookie);
        EXPECT_EQ(chain.simulator.BitsPerSecond(Chain::kName), rate.bitsPerSecond);
        std::vector<char> model(64);
        EXPECT_EQ(chain.Read(gencp::abrm::kModelName.address, model), 0) << chain.LastError(chain.cookie);
        EXPECT_STREQ(model.data(), "H2048");
    }
    ASSERT_EQ(chain.SetRate(gencp::kStartBaudRate.flag), 0);
    EXPECT_EQ(chain.simulator.BitsPerSecond(Chain::kName), 9600u);
}

TEST(DriverChain, ReconnectsAtTheLastRate) {
    Chain chain(Options(""));
    ASSERT_EQ(chain.Probe(), 0);
    ASSERT_EQ(chain.SetRate(0x80), 0);
    chain.Disconnect();
    chain.simulator.ResetStatistics(Chain::kName);
    ASSERT_EQ(chain.Probe("x#y#Marlow#Heron#H2048#4711"), 0) << chain.LastError();
    EXPECT_EQ(chain.Rate(), 0x80u);
    EXPECT_EQ(chain.simulator.StatisticsOf(Chain::kName).packetsIn, 1u);
}

TEST(DriverChain, FetchesTheDescriptionAsItLies) {
    for (const char* zip : {"zip=off", "zip=on"}) {
        Chain chain(Options(zip));
        ASSERT_EQ(chain.Probe(), 0);
        ASSERT_EQ(chain.SetRate(0x80), 0);
        std::vector<char> file;
        ASSERT_EQ(chain.Fetch(chain.XmlId(), file), 0) << chain.LastError(chain.cookie);
        const auto expected = chain.simulator.DescriptionFile(Chain::kName);
        EXPECT_EQ(std::vector<std::uint8_t>(file.begin(), file.end()), expected);
    }
}

TEST(DriverChain, OldAndPlainCamerasAreServed) {
    Chain chain(Options("gencp=1.0,stacked=off,written-length=off,family="));
    ASSERT_EQ(chain.Probe(), 0) << chain.LastError();
    EXPECT_EQ(chain.deviceId, "Marlow#H2048#H2048#2.0#4711");
    EXPECT_EQ(chain.Write(registers::kWidth.address, Number(640)), 0) << chain.LastError(chain.cookie);
}

TEST(DriverChain, AnotherCameraOnThePortIsNotTakenForTheFirst) {
    Chain chain(Options(""));
    ASSERT_EQ(chain.Probe(), 0);
    chain.Disconnect();
    chain.simulator.Exchange(Chain::kName, Options("serial=4712"));
    EXPECT_EQ(chain.Probe("Marlow#Heron#H2048#4711"), CLProtocol::CLP_NO_DEVICE_FOUND);
    EXPECT_EQ(chain.LastError(),
              "The camera 'Marlow#Heron#H2048#2.0#4712' answers at 9600 baud, not 'Marlow#Heron#H2048#4711'.");
}

TEST(DriverChain, AnotherMakersCameraIsNotOurs) {
    Chain chain(Options("manufacturer=Acme"));
    EXPECT_EQ(chain.Probe(), CLProtocol::CLP_NO_DEVICE_FOUND);
}

TEST(DriverChain, SilentCameraIsAFailureThatNamesTheRates) {
    Chain chain(Options("silent=on"));
    EXPECT_EQ(chain.Probe(), CLProtocol::CLP_DRIVER_NO_ANSWER);
    EXPECT_EQ(chain.LastError(),
              "No camera answers. Baud rates tried: 9600, 921600, 460800, 230400, 115200, 57600, 38400, 19200.");
}

TEST(DriverChain, LostPacketOfAChangeOfRateEndsInAgreement) {
    Chain chain(Options(""));
    ASSERT_EQ(chain.Probe(), 0);
    CLUINT32 target = 0x10;
    for (unsigned packet = 0; packet < 6; ++packet) {
        chain.simulator.SetFault(Chain::kName, "fail-at", std::to_string(packet));
        EXPECT_EQ(chain.SetRate(target), 0) << packet << ": " << chain.LastError(chain.cookie);
        EXPECT_EQ(chain.simulator.BitsPerSecond(Chain::kName), gencp::FindBaudRateByFlag(chain.Rate())->bitsPerSecond);
        std::vector<char> version(4);
        EXPECT_EQ(chain.Read(0, version), 0) << packet;
        target = target == 0x10 ? 0x80 : 0x10;
    }
}

TEST(DriverChain, BadLineNeverGivesAWrongValueNorWritesTwice) {
    Chain chain(Options("loss=0.02,damage=0.02,repeat=0.02"));
    while (chain.Probe() != 0)
        chain.line.reset();
    while (chain.Rate() != 0x80)
        chain.SetRate(0x80);
    chain.simulator.ResetStatistics(Chain::kName);
    std::uint64_t writes = 0;
    for (std::uint32_t i = 0; i < 150; ++i) {
        const auto value = Number(16 + 16 * (i % 100));
        if (chain.Write(registers::kWidth.address, value) != 0)
            continue;
        ++writes;
        std::vector<char> back(4);
        if (chain.Read(registers::kWidth.address, back) == 0) {
            EXPECT_EQ(back, value);
        }
    }
    EXPECT_GE(writes, 149u);
    EXPECT_LE(chain.simulator.StatisticsOf(Chain::kName).WritesAt(registers::kWidth.address), 150u);
}

TEST(DriverChain, CablePulledAfterAnyPacketIsOneFailureAndHealsWhenPluggedIn) {
    Chain chain(Options(""));
    for (unsigned packets = 0; packets < 9; ++packets) {
        chain.simulator.SetFault(Chain::kName, "drop-after", std::to_string(packets));
        CLINT32 code = 0;
        try {
            code = chain.Probe();
        } catch (const std::runtime_error&) {
            code = CL_ERR_INVALID_REFERENCE;  // the link was gone before the port was opened
        }
        std::vector<char> model(64);
        if (code == 0)
            code = chain.Read(gencp::abrm::kModelName.address, model);
        EXPECT_TRUE(code <= 0) << code;
        EXPECT_EQ(code == 0, std::string(model.data()) == "H2048") << packets;
        chain.Disconnect();
        chain.simulator.Unplug(Chain::kName);
        chain.simulator.Plug(Chain::kName);
        chain.simulator.SetFaults(Chain::kName, {});
        ASSERT_EQ(chain.Probe(), 0) << chain.LastError();
        chain.Disconnect();
    }
}

TEST(DriverChain, SlowWriteIsPendingAndCarriedOutOnce) {
    Chain chain(Options("pending=2500"));  // so long that a busy machine does not keep it from being seen as pending
    ASSERT_EQ(chain.Probe(), 0);
    ASSERT_EQ(chain.Write(registers::kUserSetSelector.address, Number(1)), 0);
    CLINT32 code = chain.Write(registers::kUserSetSave.address, Number(1));
    EXPECT_EQ(code, CLProtocol::CLP_PENDING_WRITE) << chain.LastError(chain.cookie);
    for (int i = 0; code == CLProtocol::CLP_PENDING_WRITE && i < 20; ++i)
        code = chain.driver.continueWrite(chain.line.get(), chain.cookie, 1, Chain::kTimeout);
    EXPECT_EQ(code, 0) << chain.LastError(chain.cookie);
    EXPECT_EQ(chain.simulator.StatisticsOf(Chain::kName).WritesAt(registers::kUserSetSave.address), 1u);
}

}  // namespace
