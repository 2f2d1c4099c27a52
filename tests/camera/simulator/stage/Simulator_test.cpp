/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Simulated cameras through their serial lines
 */

#include "simulator/Simulator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include "../../../support/TemporaryFolder.h"
#include "../Host.h"
#include "SimulatorFixture.h"
#include "gencp/Memory.h"
#include "simulator/CameraRegisters.h"

namespace MarlowSimTest {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

TEST_F(SimulatorTest, AnswersOnTheLineThatItsLinkNames) {
    Host host(Add("cam0", "model=H4096,serial=S1"));
    const Bytes model = host.Read(abrm::kModelName);
    EXPECT_STREQ(reinterpret_cast<const char*>(model.data()), "H4096");
    EXPECT_EQ(m_simulator.StatisticsOf("cam0").packetsIn, 1U);
}

TEST_F(SimulatorTest, PlaysManyCamerasAtOnce) {
    std::vector<std::thread> hosts;
    for (int number = 0; number < 32; ++number) {
        const fs::path link = Add("cam" + std::to_string(number), "serial=" + std::to_string(number));
        hosts.emplace_back([link, number] {
            Host host(link);
            for (int round = 0; round < 20; ++round) {
                const Bytes serial = host.Read(abrm::kSerialNumber);
                EXPECT_EQ(reinterpret_cast<const char*>(serial.data()), std::to_string(number));
            }
        });
    }
    for (std::thread& host : hosts)
        host.join();
    EXPECT_EQ(m_simulator.Names().size(), 32U);
}

TEST_F(SimulatorTest, CamerasWithoutASerialNumberGetDifferentOnes) {
    Host first(Add("a"));
    Host second(Add("b"));
    const auto text = [](const Bytes& bytes) { return std::string(bytes.begin(), std::ranges::find(bytes, 0)); };
    EXPECT_EQ(text(first.Read(abrm::kSerialNumber)), "24000001");
    EXPECT_EQ(text(second.Read(abrm::kSerialNumber)), "24000002");
}

TEST_F(SimulatorTest, GivesItsDescriptionInPieces) {
    Host host(Add("cam0", "zip=on"));
    const Bytes file = m_simulator.DescriptionFile("cam0");
    Bytes read;
    while (read.size() < file.size()) {
        const auto part = static_cast<std::uint32_t>(std::min(file.size() - read.size(), kMaxReadData));
        const Bytes bytes = host.Read({registers::kDescriptionAddress + read.size(), part});
        read.insert(read.end(), bytes.begin(), bytes.end());
    }
    EXPECT_EQ(read, file);
}

TEST_F(SimulatorTest, FindsACommandAmongStrayBytes) {
    Host host(Add("cam0"));
    Bytes bytes{0x00, 0x01, 0x01, 0x00, 0x55, 0x01};
    const Bytes command = ReadCommand(abrm::kGenCpVersion, 5);
    bytes.insert(bytes.end(), command.begin(), command.end());
    host.SendBytes(bytes);
    const auto answer = host.Receive();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->header.requestId, 5);
}

TEST_F(SimulatorTest, ForgetsAPacketThatDoesNotBecomeWhole) {
    Host host(Add("cam0"));
    // Alone, the beginning of a long packet would swallow the commands behind it.
    const Bytes cut = BuildCommand(kWriteMem, 1, Bytes(1000));
    host.SendBytes(ByteView(cut).first(20));
    EXPECT_FALSE(host.Receive(milliseconds(1300)));
    EXPECT_EQ(host.Number(abrm::kGenCpVersion), 0x00010003U);
    EXPECT_EQ(m_simulator.StatisticsOf("cam0").executed, 1U);
}

TEST_F(SimulatorTest, DiscardsADamagedCommand) {
    Host host(Add("cam0"));
    Bytes command = WriteCommand(registers::kGainRaw, 5, 1);
    command.back() ^= 1;
    host.SendBytes(command);
    host.SendBytes(ReadCommand(registers::kGainRaw, 2));
    const auto answer = host.Receive();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->header.requestId, 2);
    EXPECT_EQ(Load32(answer->scd, 0), 0U);
}

TEST_F(SimulatorTest, FallsSilentAndSpeaksAgain) {
    Host host(Add("cam0"));
    m_simulator.SetFault("cam0", "silent", "on");
    host.SendBytes(ReadCommand(abrm::kGenCpVersion, 1));
    EXPECT_TRUE(WaitForFigures("cam0", [](const Statistics& s) { return s.bytesIn == 28; }));
    m_simulator.SetFault("cam0", "silent", "off");
    EXPECT_EQ(host.Number(abrm::kGenCpVersion), 0x00010003U);
    EXPECT_EQ(m_simulator.StatisticsOf("cam0").executed, 1U);
    EXPECT_FALSE(host.HasHungUp());
}

TEST_F(SimulatorTest, FallsSilentAfterACount) {
    Host host(Add("cam0", "silent-after=2"));
    EXPECT_EQ(host.Number(abrm::kGenCpVersion), 0x00010003U);
    EXPECT_TRUE(m_simulator.OptionsOf("cam0").faults.silent);
}

TEST_F(SimulatorTest, ExchangingKeepsTheLine) {
    Host host(Add("cam0", "serial=1"));
    CameraOptions other;
    other.model = "H8192L";
    other.serial = "2";
    m_simulator.Exchange("cam0", other);
    EXPECT_STREQ(reinterpret_cast<const char*>(host.Read(abrm::kModelName).data()), "H8192L");
    EXPECT_STREQ(reinterpret_cast<const char*>(host.Read(abrm::kSerialNumber).data()), "2");
    EXPECT_FALSE(host.HasHungUp());
}

TEST_F(SimulatorTest, SlowCommandsArePending) {
    Host host(Add("cam0", "pending=300"));
    const auto first = host.Exchange(kWriteMem, EncodeWrite(registers::kUserSetLoad.address, Bytes{0, 0, 0, 1}));
    ASSERT_TRUE(first);
    EXPECT_EQ(first->header.command, kPendingAck);
    auto answer = host.Receive();
    while (answer && answer->header.command == kPendingAck)
        answer = host.Receive();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->header.command, AcknowledgeOf(kWriteMem));
}

TEST_F(SimulatorTest, ALateAcknowledgeStillComes) {
    Host host(Add("cam0", "late=1,late-time=50"));
    const auto begin = steady_clock::now();
    EXPECT_EQ(host.Number(abrm::kGenCpVersion), 0x00010003U);
    EXPECT_GE(steady_clock::now() - begin, milliseconds(50));
}

TEST_F(SimulatorTest, RefusesNamesThatDoNotWork) {
    Add("cam0");
    EXPECT_THROW(m_simulator.Add("cam0"), std::invalid_argument);
    EXPECT_THROW(m_simulator.Add("a/b"), std::invalid_argument);
    EXPECT_THROW(m_simulator.Add(""), std::invalid_argument);
    EXPECT_THROW(m_simulator.Unplug("cam9"), std::invalid_argument);
    CameraOptions options;
    options.model = "H1";
    EXPECT_THROW(m_simulator.Add("cam1", options), std::invalid_argument);
    EXPECT_THROW(m_simulator.Exchange("cam0", options), std::invalid_argument);
    EXPECT_EQ(m_simulator.Names(), std::vector<std::string>{"cam0"});
}

TEST_F(SimulatorTest, RegistersCanBeReachedPastTheLine) {
    Host host(Add("cam0"));
    m_simulator.WriteRegister("cam0", registers::kGainRaw.address, {0, 0, 0, 9});
    EXPECT_EQ(host.Number(registers::kGainRaw), 9U);
    EXPECT_EQ(m_simulator.ReadRegister("cam0", registers::kGainRaw.address, 4), (Bytes{0, 0, 0, 9}));
    EXPECT_THROW(m_simulator.WriteRegister("cam0", registers::kWidth.address, {0, 0, 0, 1}), std::invalid_argument);
    EXPECT_EQ(m_simulator.StatisticsOf("cam0").WritesAt(registers::kGainRaw.address), 0U);
}

TEST_F(SimulatorTest, EndsPromptlyInTheMiddleOfEverything) {
    for (int round = 0; round < 50; ++round) {
        test_support::TemporaryFolder folder;
        Simulator simulator(folder.Path());
        simulator.Add("cam0", ParseCamera("c,paced=on").options);
        Host host(simulator.LinkOf("cam0"));
        host.SendBytes(ReadCommand({registers::kDescriptionAddress, 1000}, 1));
    }
}

TEST_F(SimulatorTest, ManyThreadsMayCommandIt) {
    Add("cam0");
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([this, number] {
            for (int round = 0; round < 50; ++round) {
                if (number == 0) {
                    m_simulator.Unplug("cam0");
                    m_simulator.Plug("cam0");
                } else {
                    m_simulator.SetFault("cam0", "loss", "0.5");
                    EXPECT_THAT(m_simulator.Control("stats cam0"), HasSubstr("ok packets-in="));
                }
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(SimulatorTest, ObeysControlCommands) {
    const fs::path link = Add("cam0", "serial=1");
    EXPECT_EQ(m_simulator.Control("list"), "ok cam0");
    EXPECT_EQ(m_simulator.Control("loss cam0 0.25"), "ok");
    EXPECT_EQ(m_simulator.OptionsOf("cam0").faults.loss, 0.25);
    EXPECT_EQ(m_simulator.Control("loss cam0 0"), "ok");
    EXPECT_EQ(m_simulator.Control("baud cam0"), "ok 9600");
    EXPECT_EQ(m_simulator.Control("exchange cam0 model=H4096,serial=77"), "ok");
    Host host(link);
    EXPECT_STREQ(reinterpret_cast<const char*>(host.Read(abrm::kSerialNumber).data()), "77");
    EXPECT_EQ(host.Write(registers::kGainRaw, 3), kStatusSuccess);
    EXPECT_THAT(m_simulator.Control("stats cam0"), HasSubstr("write.0x1000ac=1"));
    EXPECT_EQ(m_simulator.Control("reset-stats cam0"), "ok");
    EXPECT_THAT(m_simulator.Control("stats cam0"), HasSubstr("packets-in=0 "));
    EXPECT_EQ(m_simulator.Control("unplug cam0"), "ok");
    EXPECT_FALSE(m_simulator.IsPlugged("cam0"));
    EXPECT_EQ(m_simulator.Control("plug cam0 keep-power"), "ok");
    EXPECT_TRUE(m_simulator.IsPlugged("cam0"));
    EXPECT_EQ(m_simulator.Control("silent cam0 on"), "ok");
    EXPECT_TRUE(m_simulator.OptionsOf("cam0").faults.silent);
}

TEST_F(SimulatorTest, AnswersBadControlCommandsWithTheReason) {
    Add("cam0");
    for (const char* command :
         {"", "nothing", "unplug", "unplug cam9", "unplug cam0 cam1", "plug cam0 power", "loss cam0 2", "loss cam0",
          "nothing cam0 1", "exchange cam0 model=H1", "exchange cam0 x", "stats"}) {
        EXPECT_THAT(m_simulator.Control(command), testing::StartsWith("error ")) << command;
    }
    EXPECT_THAT(m_simulator.Control("unplug ca\nm9"), testing::Not(HasSubstr("\n")));
}

}  // namespace
}  // namespace MarlowSimTest
