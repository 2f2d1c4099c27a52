/* SPDX-License-Identifier: Apache-2.0 */
#include "Exchanger.h"

#include <gtest/gtest.h>

#include <random>

#include "ExchangerFixture.h"
#include "Rig.h"
#include "gencp/Memory.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using gencp::Load32;
using std::chrono::milliseconds;

TEST_F(ExchangerTest, FirstCommandOfAConnectionHasRequestIdZero) {
    exchanger.Restart();
    ReadVersion();
    ReadVersion();
    EXPECT_EQ(ReceivedIds(), (std::vector<std::uint16_t>{0, 1}));
}

TEST_F(ExchangerTest, RequestIdsWrapToOne) {
    for (int i = 0; i < 0x10001; ++i)
        ReadVersion();
    EXPECT_EQ(camera.received[0xFFFE].header.requestId, 0xFFFF);
    EXPECT_EQ(camera.received[0xFFFF].header.requestId, 1);
}

TEST_F(ExchangerTest, AsksTheLibraryForExactCounts) {
    serial.readSizes.clear();
    ReadVersion();
    EXPECT_EQ(serial.readSizes, (std::vector<CLUINT32>{16, 4}));
}

TEST_F(ExchangerTest, LostCommandIsSentAgainWithItsIdAndTheFlag) {
    camera.commandFate = [](std::size_t i) { return i == 0 ? Fate::kLost : Fate::kArrives; };
    memory.Write(kScratchAddress, {{1, 2, 3, 4}});
    ASSERT_EQ(camera.received.size(), 1u);
    EXPECT_TRUE(camera.received[0].header.IsResend());
    EXPECT_EQ(camera.received[0].header.requestId, 1);
}

TEST_F(ExchangerTest, LostAcknowledgeDoesNotMakeTheCommandRunTwice) {
    camera.acknowledgeFate = [](std::size_t i) { return i == 0 ? Fate::kLost : Fate::kArrives; };
    memory.Write(kScratchAddress, {{1, 2, 3, 4}});
    EXPECT_EQ(camera.received.size(), 2u);
    EXPECT_EQ(ReceivedIds(), (std::vector<std::uint16_t>{1, 1}));
    EXPECT_EQ(camera.writes.size(), 1u);
}

TEST_F(ExchangerTest, DamagedAcknowledgeIsAskedForAgainAtOnce) {
    camera.acknowledgeFate = [](std::size_t i) { return i == 0 ? Fate::kDataDamaged : Fate::kArrives; };
    const Time begin = clock.Now();
    EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010003u);
    EXPECT_LT(clock.Now() - begin, milliseconds(120));  // two exchanges at 9600 baud, no time-out
}

TEST_F(ExchangerTest, GivesUpAfterThreeResends) {
    camera.isSilent = true;
    const Time begin = clock.Now();
    EXPECT_EQ(CodeOf([&] { ReadVersion(); }), CL_ERR_TIMEOUT);
    EXPECT_EQ(camera.commandPackets, 4u);
    EXPECT_LE(clock.Now() - begin, 4 * kTimeout);
    EXPECT_FALSE(exchanger.IsInFlight());
}

TEST_F(ExchangerTest, SilenceEndsWithinThePromisedTimeWhateverTheCameraClaims) {
    camera.isSilent = true;
    for (const unsigned response : {1u, 50u, 120u, 200u, 250u, 300u}) {
        for (const unsigned limit : {400u, 500u}) {
            memory.SetResponseTime(milliseconds(response));
            memory.SetTimeout(milliseconds(limit));
            camera.commandPackets = 0;
            const Time begin = clock.Now();
            EXPECT_EQ(CodeOf([&] { ReadVersion(); }), CL_ERR_TIMEOUT);
            EXPECT_LT(clock.Now() - begin, milliseconds(1200)) << response << ", " << limit;
            EXPECT_GE(camera.commandPackets, 2u) << response << ", " << limit;
        }
    }
}

// What looks like a packet at first would be waited for: beginnings of packets are a noise of their own.
TEST_F(ExchangerTest, NoiseWithoutEndEndsAReadWithinThePromisedTime) {
    std::mt19937 random(1);
    std::size_t at = 0;
    const auto packet = gencp::BuildCommand(gencp::AcknowledgeOf(gencp::kReadMem), 0xFFFE, gencp::Bytes(500));
    const std::function<std::uint8_t()> kinds[] = {
        [] { return std::uint8_t{0}; },
        [&] { return static_cast<std::uint8_t>(random()); },
        [&] { return packet[at++ % 40]; },
        [&] { return packet[at++ % packet.size()]; },
    };
    for (const std::uint32_t rate : {0x01u, 0x08u, 0x80u}) {
        for (const auto& kind : kinds) {
            SetRate(rate);
            serial.noise = kind;
            const Time begin = clock.Now();
            EXPECT_EQ(CodeOf([&] { ReadVersion(); }), CL_ERR_TIMEOUT);
            EXPECT_LT(clock.Now() - begin, milliseconds(1200)) << rate << ", kind " << &kind - kinds;
        }
    }
}

TEST_F(ExchangerTest, EachStateOfTheLineEndsAReadWithinThePromisedTime) {
    for (const std::uint32_t rate : {0x01u, 0x80u}) {
        for (const Fate fate : {Fate::kLost, Fate::kHeaderDamaged, Fate::kDataDamaged, Fate::kCut, Fate::kTwice}) {
            for (const bool isOfCommands : {true, false}) {
                SetRate(rate);
                const auto always = [fate](std::size_t) { return fate; };
                camera.commandFate = isOfCommands ? std::function<Fate(std::size_t)>(always) : nullptr;
                camera.acknowledgeFate = isOfCommands ? nullptr : std::function<Fate(std::size_t)>(always);
                const Time begin = clock.Now();
                if (fate == Fate::kTwice)
                    ReadVersion();
                else
                    EXPECT_EQ(CodeOf([&] { ReadVersion(); }), CL_ERR_TIMEOUT);
                EXPECT_LT(clock.Now() - begin, milliseconds(1200)) << rate << static_cast<int>(fate) << isOfCommands;
            }
        }
    }
}

TEST_F(ExchangerTest, CameraThatDiesWhileACommandIsPendingIsGivenUpInTime) {
    for (const std::uint16_t pendingMs : {std::uint16_t{10}, std::uint16_t{400}, std::uint16_t{0xFFFF}}) {
        bool isDead = false;
        Time died{};
        camera.answer = [&](const gencp::Packet& command) -> std::optional<Bytes> {
            if (std::exchange(isDead, true))
                return Bytes{};
            died = clock.Now();
            return gencp::BuildAcknowledge(gencp::kPendingAck, 0, command.header.requestId,
                                           gencp::EncodePendingAck(pendingMs));
        };
        EXPECT_THROW(ReadVersion(), DriverError);
        EXPECT_LT(clock.Now() - died, milliseconds(1200)) << pendingMs;
    }
}

TEST_F(ExchangerTest, SlowestCameraIsAskedThreeTimes) {
    memory.SetResponseTime(milliseconds(300));
    camera.responseDelay = milliseconds(250);
    camera.commandFate = [](std::size_t i) { return i < 2 ? Fate::kLost : Fate::kArrives; };
    EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010003u);
}

TEST_F(ExchangerTest, LongExchangeIsAskedForTwice) {
    memory.SetTimeout(std::chrono::seconds(5));
    camera.commandFate = [](std::size_t i) { return i == 0 ? Fate::kLost : Fate::kArrives; };
    Bytes data(kScratchSize / 4);
    memory.Read(kScratchAddress, data);
    EXPECT_EQ(camera.received.size(), 2u);
}

TEST_F(ExchangerTest, TimeThatAPendingAcknowledgeAskedForIsNoSilence) {
    camera.pendingAcks = 1;
    camera.pendingMs = 2000;
    camera.acknowledgeFate = [](std::size_t i) { return i == 1 ? Fate::kLost : Fate::kArrives; };
    auto timing = memory.UsualTiming();
    timing.pending = std::chrono::seconds(30);
    memory.WriteOnce(kScratchAddress, Bytes(4), timing);
    EXPECT_EQ(camera.writes.size(), 1u);
}

TEST_F(ExchangerTest, PendingAcknowledgeBeginsTheAttemptsAnew) {
    camera.pendingAcks = 1;
    camera.commandFate = [](std::size_t i) { return i < 3 ? Fate::kLost : Fate::kArrives; };
    camera.acknowledgeFate = [](std::size_t i) { return i == 1 ? Fate::kLost : Fate::kArrives; };
    memory.WriteOnce(kScratchAddress, Bytes(4), memory.UsualTiming());
    EXPECT_EQ(camera.writes.size(), 1u);
}

TEST_F(ExchangerTest, CutAcknowledgeCostsOneResend) {
    camera.acknowledgeFate = [](std::size_t i) { return i == 0 ? Fate::kCut : Fate::kArrives; };
    ReadVersion();
    EXPECT_EQ(camera.commandPackets, 2u);
}

TEST_F(ExchangerTest, RestartForgetsWhatWasReceivedOfAPacket) {
    const Bytes stray = gencp::BuildAcknowledge(0x0801, 0, 0, Bytes{0, 9, 0, 9});
    serial.AddStray(stray);
    exchanger.Restart();
    EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010003u);
    EXPECT_EQ(camera.commandPackets, 1u);
}

TEST_F(ExchangerTest, RestartForgetsTheBeginningOfAnAcknowledge) {
    camera.acknowledgeFate = [](std::size_t) { return Fate::kCut; };
    EXPECT_EQ(CodeOf([&] { ReadVersion(); }), CL_ERR_TIMEOUT);
    camera.acknowledgeFate = nullptr;
    exchanger.Restart();
    camera.commandPackets = 0;
    EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010003u);
    EXPECT_EQ(camera.commandPackets, 1u);
}

TEST_F(ExchangerTest, RestartForgetsACommandInFlight) {
    camera.pendingAcks = 1;
    camera.pendingMs = 2000;
    ASSERT_FALSE(memory.Write(kScratchAddress, Bytes(4)));
    exchanger.Restart();
    EXPECT_FALSE(exchanger.IsInFlight());
}

TEST_F(ExchangerTest, FailureNamesRateOperationAndAttempts) {
    camera.isSilent = true;
    EXPECT_EQ(TextOf([&] { ReadVersion(); }),
              "No answer from the camera at 9600 baud to reading 4 bytes at 0x0, sent 4 times within 200 ms each.");
}

TEST_F(ExchangerTest, NoAttemptIsLongerThanTheTimeoutGiven) {
    camera.isSilent = true;
    memory.SetTimeout(milliseconds(30));
    serial.longestRead = 0;
    EXPECT_EQ(CodeOf([&] { ReadVersion(); }), CL_ERR_TIMEOUT);
    EXPECT_LE(serial.longestRead, 30u);
}

TEST_F(ExchangerTest, StrayBytesBeforeAnAcknowledgeAreSkipped) {
    for (const Bytes& stray : {Bytes{0x00}, Bytes{0x01}, Bytes{0x01, 0x00}, Bytes(40, 0x55)}) {
        serial.AddStray(stray);
        EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010003u);
    }
    EXPECT_EQ(camera.received.size(), 4u);  // none was sent again
}

TEST_F(ExchangerTest, StaleAcknowledgeIsDropped) {
    serial.AddStray(gencp::BuildAcknowledge(0x0801, 0, 0x7777, Bytes(4, 0xEE)));
    EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010003u);
}

TEST_F(ExchangerTest, AcknowledgeOfAnotherCommandIsDropped) {
    serial.AddStray(gencp::BuildAcknowledge(0x0803, 0, 1, Bytes(4, 0xEE)));
    EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010003u);
}

TEST_F(ExchangerTest, CommandPacketsAreNoAnswers) {
    serial.AddStray(gencp::BuildCommand(gencp::kReadMem, 1, Bytes(4, 0xEE)));
    EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010003u);
}

TEST_F(ExchangerTest, PacketsOfOtherChannelsAreDropped) {
    gencp::PacketHeader header;
    header.channel = 5;
    header.command = gencp::AcknowledgeOf(gencp::kReadMem);
    header.requestId = 1;
    serial.AddStray(gencp::BuildPacket(header, Bytes(4, 0xEE)));
    EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010003u);
}

TEST_F(ExchangerTest, LateAcknowledgeIsDroppedByTheNextExchange) {
    camera.acknowledgeFate = [](std::size_t i) { return i == 0 ? Fate::kLate : Fate::kArrives; };
    camera.SetNumber({kScratchAddress, 4}, 0xABCD);
    EXPECT_EQ(Load32(ReadVersion(), 0), 0x00010003u);
    EXPECT_EQ(Load32(memory.Read(gencp::Register{kScratchAddress, 4}), 0), 0xABCDu);
}

TEST_F(ExchangerTest, LibraryThatFailsEndsTheExchange) {
    serial.readCode = -10006;
    EXPECT_EQ(CodeOf([&] { ReadVersion(); }), -10006);
    EXPECT_FALSE(exchanger.IsInFlight());
    serial.readCode.reset();
    serial.writeCode = -10006;
    EXPECT_EQ(CodeOf([&] { ReadVersion(); }), -10006);
    EXPECT_FALSE(exchanger.IsInFlight());
}

TEST_F(ExchangerTest, BabblingLineEndsAtTheDeadlines) {
    camera.isSilent = true;
    serial.onRead = [&](CLUINT32 ms) {
        serial.AddStray(Bytes(64, 0x01));
        clock.Sleep(milliseconds(ms > 0 ? 1 : 0));
    };
    EXPECT_EQ(CodeOf([&] { ReadVersion(); }), CL_ERR_TIMEOUT);
    EXPECT_LE(Elapsed(), 4 * kTimeout + milliseconds(100));
}

}  // namespace
