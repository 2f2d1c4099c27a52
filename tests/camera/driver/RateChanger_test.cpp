/* SPDX-License-Identifier: Apache-2.0 */
#include "RateChanger.h"

#include <gtest/gtest.h>

#include "Rig.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using std::chrono::milliseconds;

const gencp::BaudRate k9600 = gencp::kBaudRates[0];
const gencp::BaudRate k19200 = gencp::kBaudRates[1];
const gencp::BaudRate k115200 = gencp::kBaudRates[4];
const gencp::BaudRate k921600 = gencp::kBaudRates[7];

struct RateChangerTest : testing::Test, MemoryRig {
    RateChanger changer{line, memory, logger};

    RateChangerTest() {
        changer.SetHasRegisters(true);
        changer.SupportedByBoth();  // reads the registers, so that packets are counted from the change on
        camera.received.clear();
        camera.commandPackets = 0;
        camera.acknowledgePackets = 0;
    }

    bool AgreesAt(const gencp::BaudRate& rate) {
        return camera.Rate() == rate.flag && line.Rate().flag == rate.flag &&
               memory.Read(gencp::abrm::kGenCpVersion) == Bytes{0, 1, 0, 3};
    }
    bool Agree() { return AgreesAt(line.Rate()); }
    void LoseCommands(std::size_t from, std::size_t to) {
        camera.commandFate = [=](std::size_t i) { return i >= from && i < to ? Fate::kLost : Fate::kArrives; };
    }
};

TEST_F(RateChangerTest, ChangesToEveryRateAndBack) {
    for (const auto& rate : gencp::kBaudRates) {
        changer.Change(rate);
        EXPECT_TRUE(AgreesAt(rate));
        changer.Change(k9600);
        EXPECT_TRUE(AgreesAt(k9600));
    }
}

TEST_F(RateChangerTest, WritesTheSameTwiceOnceAtEachRate) {
    changer.Change(k115200);
    const Bytes flag{0, 0, 0, 0x10};
    const auto address = kSbrmAddress + 4;
    EXPECT_EQ(camera.writes, (std::vector<std::pair<std::uint64_t, Bytes>>{{address, flag}, {address, flag}}));
    EXPECT_EQ(camera.noiseBytes, 0u);
    EXPECT_EQ(serial.ratesSet.back(), 0x10u);
}

TEST_F(RateChangerTest, StaysWhenItIsThereAlready) {
    changer.Change(k9600);
    EXPECT_TRUE(camera.received.empty());
}

TEST_F(RateChangerTest, ChangedRateOutlivesTheConfirmationTime) {
    changer.Change(k115200);
    clock.Sleep(milliseconds(1000));
    EXPECT_TRUE(AgreesAt(k115200));
}

TEST_F(RateChangerTest, SupportedAreTheRatesOfBoth) {
    serial.supported = 0x1F;
    camera.SetNumber(gencp::sbrm::kSupportedBaudRates.At(kSbrmAddress), 0xFFFFFF11);
    SerialLine fresh(serial, clock);
    RateChanger other(fresh, memory, logger);
    other.SetHasRegisters(true);
    EXPECT_EQ(other.SupportedByBoth(), 0x11u);
    EXPECT_EQ(CodeOf([&] { other.Change(k19200); }), CL_ERR_BAUD_RATE_NOT_SUPPORTED);
    EXPECT_EQ(CodeOf([&] { other.Change(k921600); }), CL_ERR_BAUD_RATE_NOT_SUPPORTED);
    EXPECT_TRUE(Agree());
}

TEST_F(RateChangerTest, CameraWithoutRegistersKeepsItsRate) {
    RateChanger other(line, memory, logger);
    EXPECT_EQ(other.SupportedByBoth(), 0x01u);
    other.Change(k9600);
    EXPECT_EQ(CodeOf([&] { other.Change(k115200); }), kNoSerialRegisters);
    EXPECT_TRUE(camera.received.empty());
}

TEST_F(RateChangerTest, LostFirstWriteIsRepeated) {
    LoseCommands(0, 1);
    changer.Change(k115200);
    EXPECT_TRUE(AgreesAt(k115200));
}

TEST_F(RateChangerTest, LostFirstAcknowledgeStillChangesTheRate) {
    camera.acknowledgeFate = [](std::size_t i) { return i == 0 ? Fate::kLost : Fate::kArrives; };
    changer.Change(k115200);
    EXPECT_TRUE(AgreesAt(k115200));
}

TEST_F(RateChangerTest, LostFirstAcknowledgeCostsNoRound) {
    for (const auto& [from, to] : {std::pair(k9600, k115200), {k115200, k9600}, {k9600, k921600}, {k921600, k115200}}) {
        SetRate(from.flag);
        camera.acknowledgePackets = 0;
        camera.acknowledgeFate = [](std::size_t i) { return i == 0 ? Fate::kLost : Fate::kArrives; };
        const Time begin = clock.Now();
        changer.Change(to);
        EXPECT_TRUE(AgreesAt(to));
        EXPECT_LE(clock.Now() - begin, milliseconds(450));
    }
}

TEST_F(RateChangerTest, ChangeIsNeverAnnouncedTwiceWithOneId) {
    camera.commandFate = [](std::size_t i) { return i == 0 ? Fate::kLost : Fate::kArrives; };
    changer.Change(k115200);
    for (const auto& command : camera.received)
        EXPECT_FALSE(command.header.IsResend());
}

TEST_F(RateChangerTest, LostConfirmationsAreRepeatedInTime) {
    for (const auto& rate : {k115200, k9600}) {
        camera.commandPackets = 0;
        LoseCommands(1, 3);
        const auto before = clock.Now();
        changer.Change(rate);
        EXPECT_TRUE(AgreesAt(rate));
        EXPECT_LT(clock.Now() - before, milliseconds(500)) << "went back and tried again";
    }
}

TEST_F(RateChangerTest, SlowCameraIsConfirmed) {
    camera.responseDelay = milliseconds(200);
    memory.SetResponseTime(milliseconds(250));
    changer.Change(k921600);
    EXPECT_TRUE(AgreesAt(k921600));
}

TEST_F(RateChangerTest, CameraThatNeverGetsTheConfirmationIsLeftAtTheOldRate) {
    camera.commandFate = [&](std::size_t) { return line.Rate().flag == 0x80 ? Fate::kLost : Fate::kArrives; };
    EXPECT_EQ(CodeOf([&] { changer.Change(k921600); }), kBaudRateChangeFailed);
    EXPECT_TRUE(AgreesAt(k9600));
}

TEST_F(RateChangerTest, LooksAtTheOldRateWhenTheCameraHasSurelyGoneBack) {
    camera.confirmsRate = false;
    Time acknowledged{};
    Duration pause{};
    serial.onRead = [&](CLUINT32) {
        if (line.Rate().flag == 0x80 && acknowledged == Time{})
            acknowledged = clock.Now();
        else if (line.Rate().flag == 0x01 && acknowledged != Time{} && pause == Duration{})
            pause = clock.Now() - acknowledged;
    };
    camera.commandFate = [&](std::size_t) { return line.Rate().flag == 0x80 ? Fate::kLost : Fate::kArrives; };
    EXPECT_EQ(CodeOf([&] { changer.Change(k921600); }), kBaudRateChangeFailed);
    EXPECT_GE(pause, milliseconds(gencp::kBaudRateConfirmMs));
    EXPECT_LE(pause, milliseconds(400));
}

TEST_F(RateChangerTest, LineThatDoesNotCarryTheRateIsFoundOutWithinASecond) {
    for (const unsigned response : {50u, 300u}) {
        memory.SetResponseTime(milliseconds(response));
        camera.commandFate = [&](std::size_t) { return line.Rate().flag == 0x80 ? Fate::kLost : Fate::kArrives; };
        const Time begin = clock.Now();
        const auto change = [&] { changer.Change(k921600); };
        EXPECT_EQ(TextOf(change), "The baud rate could not be changed to 921600; it is 9600 again.");
        EXPECT_LE(clock.Now() - begin, milliseconds(1100)) << response;
        EXPECT_TRUE(AgreesAt(k9600));
    }
}

TEST_F(RateChangerTest, CameraThatDiesAtAnyPacketIsLostSoon) {
    for (const auto& [from, to] : {std::pair(k9600, k921600), {k921600, k9600}, {k19200, k115200}, {k9600, k19200}}) {
        for (const unsigned response : {50u, 300u}) {
            for (std::size_t last = 0; last < 3; ++last) {
                camera.commandFate = nullptr;
                SetRate(from.flag);
                memory.SetResponseTime(milliseconds(response));
                Time died = clock.Now();
                camera.commandPackets = 0;
                camera.commandFate = [&, last = last](std::size_t i) {
                    if (i <= last)
                        died = clock.Now();
                    return i < last ? Fate::kArrives : Fate::kLost;
                };
                try {
                    changer.Change(to);
                    memory.Read(gencp::abrm::kGenCpVersion);
                    ADD_FAILURE() << "the camera still answers";
                } catch (const NoAnswerError&) {
                    EXPECT_LT(clock.Now() - died, milliseconds(1200)) << from.flag << to.flag << response << last;
                }
            }
        }
    }
}

TEST_F(RateChangerTest, LostAcknowledgesOfTheConfirmationAreFoundOut) {
    // The camera got the confirmation and stays; the host hears nothing of it until it looks.
    camera.acknowledgeFate = [](std::size_t i) { return i >= 1 && i <= 3 ? Fate::kLost : Fate::kArrives; };
    changer.Change(k115200);
    EXPECT_TRUE(AgreesAt(k115200));
}

TEST_F(RateChangerTest, CameraThatRefusesIsAFailureWithItsStatus) {
    camera.answer = [](const gencp::Packet& command) -> std::optional<Bytes> {
        if (command.header.command != gencp::kWriteMem)
            return std::nullopt;
        return gencp::BuildAcknowledge(0x0803, gencp::kStatusAccessDenied, command.header.requestId, {});
    };
    EXPECT_EQ(CodeOf([&] { changer.Change(k115200); }), kStatusCodes - 6);
    EXPECT_TRUE(AgreesAt(k9600));
}

TEST_F(RateChangerTest, HostThatCannotSwitchGoesBack) {
    serial.refusedRates = 0x10;
    EXPECT_EQ(CodeOf([&] { changer.Change(k115200); }), CL_ERR_BAUD_RATE_NOT_SUPPORTED);
    EXPECT_TRUE(AgreesAt(k9600));
}

TEST_F(RateChangerTest, RateThatTheHostRefusedIsNotTriedAgain) {
    serial.refusedRates = 0x10;
    EXPECT_EQ(CodeOf([&] { changer.Change(k115200); }), CL_ERR_BAUD_RATE_NOT_SUPPORTED);
    EXPECT_EQ(changer.SupportedByBoth(), 0xEFu);
    camera.received.clear();
    EXPECT_EQ(CodeOf([&] { changer.Change(k115200); }), CL_ERR_BAUD_RATE_NOT_SUPPORTED);
    EXPECT_TRUE(camera.received.empty());
}

TEST_F(RateChangerTest, NoAddressOfTheRegistersIsNoRegisters) {
    camera.SetNumber(gencp::abrm::kSbrmAddress, 0);
    RateChanger other(line, memory, logger);
    other.SetHasRegisters(true);
    EXPECT_EQ(CodeOf([&] { other.Change(k115200); }), kNoSerialRegisters);
    EXPECT_EQ(other.SupportedByBoth(), 0x01u);
    EXPECT_TRUE(camera.writes.empty());
}

TEST_F(RateChangerTest, BadAddressOfTheRegistersIsARefusal) {
    camera.SetNumber(gencp::abrm::kSbrmAddress, 0x7000000);
    RateChanger other(line, memory, logger);
    other.SetHasRegisters(true);
    EXPECT_EQ(CodeOf([&] { other.Change(k115200); }), kStatusCodes - 3);
    EXPECT_TRUE(AgreesAt(k9600));
}

TEST_F(RateChangerTest, PendingWriteKeepsTheRateAsItIs) {
    camera.pendingAcks = 1;
    camera.pendingMs = 1000;
    ASSERT_FALSE(memory.Write(kScratchAddress, Bytes(4)));
    EXPECT_EQ(CodeOf([&] { changer.Change(k115200); }), kWriteStillPending);
    EXPECT_TRUE(exchanger.IsInFlight());
    while (!memory.ContinueWrite())
        continue;
    EXPECT_TRUE(AgreesAt(k9600));
}

TEST_F(RateChangerTest, CameraThatVanishesIsAFailure) {
    camera.commandFate = [](std::size_t i) { return i >= 1 ? Fate::kLost : Fate::kArrives; };
    EXPECT_EQ(CodeOf([&] { changer.Change(k115200); }), CL_ERR_TIMEOUT);
    EXPECT_EQ(line.Rate().flag, 0x01u);
}

TEST_F(RateChangerTest, CameraThatVanishesLeavesTheHostAtTheOldRate) {
    SetRate(k115200.flag);
    camera.commandFate = [](std::size_t i) { return i >= 1 ? Fate::kLost : Fate::kArrives; };
    EXPECT_EQ(CodeOf([&] { changer.Change(k921600); }), CL_ERR_TIMEOUT);
    EXPECT_EQ(line.Rate().flag, k115200.flag);
    EXPECT_EQ(serial.ratesSet.back(), k115200.flag);
}

TEST_F(RateChangerTest, CameraThatFellBackTo9600MeanwhileIsFound) {
    SetRate(k115200.flag);
    camera.commandFate = [&](std::size_t i) {
        if (i == 1)
            camera.SetRate(k9600.flag);
        return i >= 1 && line.Rate().flag != k9600.flag ? Fate::kLost : Fate::kArrives;
    };
    EXPECT_EQ(CodeOf([&] { changer.Change(k921600); }), kBaudRateChangeFailed);
    EXPECT_TRUE(AgreesAt(k9600));
}

TEST_F(RateChangerTest, AnyFateOfAnyPacketEndsInAgreement) {
    for (const Fate fate :
         {Fate::kLost, Fate::kHeaderDamaged, Fate::kDataDamaged, Fate::kCut, Fate::kTwice, Fate::kLate}) {
        for (std::size_t packet = 0; packet < 8; ++packet) {
            for (const bool isCommand : {true, false}) {
                const auto fates = [=](std::size_t i) { return i == packet ? fate : Fate::kArrives; };
                camera.commandPackets = camera.acknowledgePackets = 0;
                camera.commandFate = isCommand ? std::function<Fate(std::size_t)>(fates) : nullptr;
                camera.acknowledgeFate = isCommand ? nullptr : std::function<Fate(std::size_t)>(fates);
                const auto& target = line.Rate().flag == k9600.flag ? k115200 : k9600;
                changer.Change(target);
                EXPECT_TRUE(AgreesAt(target)) << static_cast<int>(fate) << " of packet " << packet;
            }
        }
    }
}

}  // namespace
