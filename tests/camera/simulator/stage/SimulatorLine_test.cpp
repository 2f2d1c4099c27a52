/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The lines of simulated cameras: rates, lost packets, pulled cables
 */

#include "simulator/Simulator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "../Host.h"
#include "SimulatorFixture.h"
#include "gencp/BaudRate.h"
#include "simulator/CameraRegisters.h"

namespace MarlowSimTest {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

constexpr Register kBaud = sbrm::kCurrentBaudRate.At(registers::kSbrmAddress);

TEST_F(SimulatorTest, HearsNoiseAtAnotherRate) {
    Host host(Add("cam0"), 115200);
    host.SendBytes(ReadCommand(abrm::kGenCpVersion, 1));
    EXPECT_TRUE(WaitForFigures("cam0", [](const Statistics& s) { return s.noiseBytes == 28; }));
    host.SetBaudRate(9600);
    EXPECT_EQ(host.Number(abrm::kGenCpVersion), 0x00010003U);
    EXPECT_EQ(m_simulator.StatisticsOf("cam0").executed, 1U);
}

TEST_F(SimulatorTest, SendsNoiseToAHostAtAnotherRate) {
    Host host(Add("cam0", "delay=200"));
    const Bytes command = ReadCommand(abrm::kGenCpVersion, 1);
    host.SendBytes(command);
    EXPECT_TRUE(WaitForFigures("cam0", [](const Statistics& s) { return s.executed == 1; }));
    host.SetBaudRate(19200);
    const Bytes bytes = host.ReceiveBytes(20, seconds(20));
    EXPECT_EQ(bytes.size(), 20U);
    EXPECT_FALSE(ParseHeader(bytes));
}

TEST_F(SimulatorTest, CarriesNoRateBeyondTheLimitOfTheLine) {
    Host host(Add("cam0", "line-limit=115200,baud=230400"), 230400);
    host.SendBytes(ReadCommand(abrm::kGenCpVersion, 1));
    EXPECT_TRUE(WaitForFigures("cam0", [](const Statistics& s) { return s.noiseBytes == 28; }));
    m_simulator.SetFault("cam0", "line-limit", "230400");
    EXPECT_EQ(host.Number(abrm::kGenCpVersion), 0x00010003U);
    EXPECT_EQ(m_simulator.StatisticsOf("cam0").executed, 1U);
}

TEST_F(SimulatorTest, SendsNoiseWithoutEndUntilItIsTakenBack) {
    Host host(Add("cam0", "noise=on,baud=115200"), 115200);
    host.SendBytes(ReadCommand(abrm::kGenCpVersion, 1));
    EXPECT_GE(host.ReceiveBytes(3000, seconds(60)).size(), 3000U);
    m_simulator.SetFault("cam0", "noise", "off");
    const auto noise = m_simulator.StatisticsOf("cam0").noiseBytes;
    EXPECT_GE(noise, 3000U);
    EXPECT_EQ(host.Number(abrm::kGenCpVersion), 0x00010003U);
    EXPECT_EQ(m_simulator.StatisticsOf("cam0").noiseBytes, noise);
}

TEST_F(SimulatorTest, ChangesTheRateWithAConfirmingWrite) {
    Host host(Add("cam0"));
    EXPECT_EQ(host.Write(kBaud, 0x80), kStatusSuccess);
    host.SetBaudRate(921600);
    EXPECT_EQ(host.Write(kBaud, 0x80), kStatusSuccess);
    EXPECT_EQ(m_simulator.BitsPerSecond("cam0"), 921600U);
    EXPECT_EQ(host.Number(kBaud), 0x80U);
}

TEST_F(SimulatorTest, GoesBackWhenTheConfirmingWriteIsLost) {
    Host host(Add("cam0", "fail-at=2"));
    EXPECT_EQ(host.Write(kBaud, 0x80), kStatusSuccess);
    host.SetBaudRate(921600);
    host.SendBytes(WriteCommand(kBaud, 0x80, 100));
    EXPECT_FALSE(host.Receive(milliseconds(500)));
    host.SetBaudRate(9600);
    EXPECT_EQ(host.Number(kBaud), 0x01U);
}

TEST_F(SimulatorTest, ARepeatedCommandIsCarriedOutOnce) {
    Host host(Add("cam0", "repeat=1"));
    EXPECT_EQ(host.Write(registers::kTriggerSoftware, 1), kStatusSuccess);
    // Command and acknowledge both came twice: four acknowledges in all.
    for (int copy = 0; copy < 3; ++copy) {
        const auto answer = host.Receive();
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->header.requestId, host.id);
    }
    EXPECT_EQ(m_simulator.StatisticsOf("cam0").WritesAt(registers::kTriggerSoftware.address), 1U);
}

TEST_F(SimulatorTest, ALostAcknowledgeIsHadBySendingAgain) {
    Host host(Add("cam0", "fail-at=1"));
    host.SendBytes(WriteCommand(registers::kTriggerSoftware, 1, 9));
    EXPECT_TRUE(WaitForFigures("cam0", [](const Statistics& s) { return s.lost == 1; }));
    host.SendBytes(WriteCommand(registers::kTriggerSoftware, 1, 9, true));
    const auto answer = host.Receive();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->header.flags, kStatusSuccess);
    EXPECT_EQ(m_simulator.StatisticsOf("cam0").WritesAt(registers::kTriggerSoftware.address), 1U);
}

TEST_F(SimulatorTest, NoWriteRunsTwiceOnABadLine) {
    Host host(Add("cam0", "loss=0.1,damage=0.1,repeat=0.1,seed=5"));
    constexpr std::uint32_t kWrites = 300;
    for (std::uint32_t number = 1; number <= kWrites; ++number) {
        bool resend = false;
        for (bool isDone = false; !isDone; resend = true) {
            host.SendBytes(WriteCommand(registers::kTriggerSoftware, 1, static_cast<std::uint16_t>(number), resend));
            auto answer = host.Receive(milliseconds(20));
            while (answer && answer->header.requestId != number)
                answer = host.Receive(milliseconds(20));
            isDone = answer.has_value();
        }
    }
    const Statistics figures = m_simulator.StatisticsOf("cam0");
    EXPECT_EQ(figures.WritesAt(registers::kTriggerSoftware.address), kWrites);
    EXPECT_GT(figures.lost, 0U);
    EXPECT_GT(figures.damaged, 0U);
    EXPECT_GT(figures.resent, 0U);
}

TEST_F(SimulatorTest, UnpluggingHangsUpAndRemovesTheLink) {
    const fs::path link = Add("cam0");
    Host host(link);
    m_simulator.Unplug("cam0");
    EXPECT_TRUE(host.HasHungUp());
    EXPECT_FALSE(HostPort::IsThere(link));
    EXPECT_FALSE(m_simulator.IsPlugged("cam0"));
    m_simulator.Unplug("cam0");
}

TEST_F(SimulatorTest, PluggingInAgainGivesANewLineAndAFreshCamera) {
    const fs::path link = Add("cam0");
    {
        Host host(link);
        EXPECT_EQ(host.Write(registers::kGainRaw, 7), kStatusSuccess);
    }
    m_simulator.Unplug("cam0");
    m_simulator.Plug("cam0");
    Host host(link);
    EXPECT_EQ(host.Number(registers::kGainRaw), 0U);
}

TEST_F(SimulatorTest, ACameraThatKeptItsPowerGoesOn) {
    const fs::path link = Add("cam0");
    {
        Host host(link);
        EXPECT_EQ(host.Write(kBaud, 0x10), kStatusSuccess);
        host.SetBaudRate(115200);
        EXPECT_EQ(host.Write(kBaud, 0x10), kStatusSuccess);
    }
    m_simulator.Unplug("cam0");
    m_simulator.Plug("cam0", Power::kKept);
    Host host(link, 115200);
    EXPECT_EQ(host.Number(kBaud), 0x10U);
}

class PulledCable : public SimulatorTest, public testing::WithParamInterface<int> {};

TEST_P(PulledCable, IsOutAfterExactlySoManyPackets) {
    const int packets = GetParam();
    const fs::path link = Add("cam0");
    Host host(link);
    m_simulator.SetFault("cam0", "drop-after", std::to_string(packets));
    int answers = 0;
    try {
        for (std::uint32_t round = 0; round < 10; ++round) {
            EXPECT_EQ(host.Write(registers::kGainRaw, round), kStatusSuccess);
            ++answers;
        }
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(answers, packets / 2) << "each answer takes two packets";
    EXPECT_TRUE(host.WaitForHangUp());
    EXPECT_FALSE(HostPort::IsThere(link));
    EXPECT_EQ(m_simulator.StatisticsOf("cam0").WritesAt(registers::kGainRaw.address),
              static_cast<std::uint64_t>((packets + 1) / 2));
    m_simulator.Plug("cam0");
    EXPECT_EQ(Host(link).Number(abrm::kGenCpVersion), 0x00010003U);
}

INSTANTIATE_TEST_SUITE_P(Counts, PulledCable, testing::Range(0, 8));

TEST_F(SimulatorTest, APacedLineTakesTheTimeOfItsBytes) {
    Host host(Add("cam0", "paced=on,baud=115200"), 115200);
    const auto begin = steady_clock::now();
    host.Read({registers::kDescriptionAddress, kMaxReadData});
    const auto onLine = TransferTime(28, 115200) + TransferTime(kMaxPacketSize, 115200);
    EXPECT_GE(steady_clock::now() - begin, onLine);
}

TEST_F(SimulatorTest, CountsTheTimeOnTheLineOfUnpacedBytes) {
    Host host(Add("cam0", "baud=115200"), 115200);
    host.Read(abrm::kGenCpVersion);
    const Statistics figures = m_simulator.StatisticsOf("cam0");
    const auto expected = TransferTime(28, 115200) + TransferTime(20, 115200);
    EXPECT_LE(std::chrono::abs(figures.lineTime - expected), std::chrono::microseconds(1));
    EXPECT_THAT(figures.ToText(), HasSubstr(" line-us=416"));
}

TEST_F(SimulatorTest, APacedAcknowledgeArrivesWhole) {
    Host host(Add("cam0", "paced=on,baud=921600"), 921600);
    const Bytes file = m_simulator.DescriptionFile("cam0");
    for (std::uint32_t part = 0; part < 10; ++part) {
        const Bytes bytes = host.Read({registers::kDescriptionAddress + part * kMaxReadData, kMaxReadData});
        EXPECT_TRUE(
            std::equal(bytes.begin(), bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(part * kMaxReadData)));
    }
}

}  // namespace
}  // namespace MarlowSimTest
