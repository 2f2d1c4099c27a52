/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera as its line sees it, at times that the test makes
 */

#include "camera/Device.h"

#include <gtest/gtest.h>

#include "DeviceFixture.h"
#include "base/Sha1.h"
#include "gencp/Manifest.h"
#include "gencp/Memory.h"
#include "simulator/CameraRegisters.h"

namespace MarlowSim {
namespace {

constexpr Register kBaud = sbrm::kCurrentBaudRate.At(kSbrmAddress);

TEST_F(DeviceTest, TellsItsNamesAndCapabilities) {
    const auto text = [this](Register where) {
        const Bytes scd = Read(where.address, 64).scd;
        return std::string(scd.begin(), std::find(scd.begin(), scd.end(), 0));
    };
    EXPECT_EQ(text(abrm::kManufacturerName), "Marlow");
    EXPECT_EQ(text(abrm::kFamilyName), "Heron");
    EXPECT_EQ(text(abrm::kModelName), "H2048");
    EXPECT_EQ(text(abrm::kSerialNumber), "4711");
    EXPECT_EQ(Number(abrm::kGenCpVersion), 0x00010003U);
    EXPECT_EQ(Load64(Read(abrm::kDeviceCapability.address, 8).scd, 0),
              capability::kUserDefinedName | capability::kAccessPrivilege | capability::kTimestamp |
                  (capability::kEncodingUtf8 << capability::kEncodingShift) | capability::kFamilyName |
                  capability::kSbrm | capability::kEndiannessRegister | capability::kWrittenLength |
                  capability::kStackedCommands | capability::kSoftwareInterfaceVersion);
}

TEST_F(DeviceTest, CanBeAnOldCamera) {
    CameraOptions options;
    options.family = "";
    options.stacked = options.writtenLength = false;
    options.genCpMinor = 0;
    Make(options);
    EXPECT_EQ(Number(abrm::kGenCpVersion), 0x00010000U);
    const std::uint64_t bits = Load64(Read(abrm::kDeviceCapability.address, 8).scd, 0);
    EXPECT_EQ(bits & (capability::kFamilyName | capability::kStackedCommands | capability::kWrittenLength |
                      capability::kSoftwareInterfaceVersion),
              0U);
    EXPECT_EQ(Exchange(Command(kReadMemStacked, EncodeRanges({}), 9)).header.flags, kStatusNotImplemented);
    EXPECT_TRUE(Exchange(Command(kWriteMem, EncodeWrite(kGainRaw.address, NumberBytes(1, 4)), 10)).scd.empty());
}

TEST_F(DeviceTest, CanBeWithoutRegistersForItsRate) {
    CameraOptions options;
    options.serialRegisters = SerialRegisters::kNone;
    Make(options);
    EXPECT_EQ(Load64(Read(abrm::kDeviceCapability.address, 8).scd, 0) & capability::kSbrm, 0U);
    options.serialRegisters = SerialRegisters::kElsewhere;
    Make(options);
    EXPECT_NE(Load64(Read(abrm::kDeviceCapability.address, 8).scd, 0) & capability::kSbrm, 0U);
    const std::uint64_t address = Load64(Read(abrm::kSbrmAddress.address, 8).scd, 0);
    EXPECT_EQ(Read(address, 4).header.flags, kStatusInvalidAddress);
}

TEST_F(DeviceTest, RefusesAccessesToChosenBytes) {
    m_faults.refusedWrites = {{kWidth.address + 3, kStatusAccessDenied}};
    m_faults.refusedReads = {{kHeight.address, kStatusBusy}};
    const std::uint32_t width = Number(kWidth);
    EXPECT_EQ(Write(kWidth, 640), kStatusAccessDenied);
    EXPECT_EQ(Number(kWidth), width);
    EXPECT_EQ(m_statistics.WritesAt(kWidth.address), 0U);
    EXPECT_EQ(Read(kHeight.address, 4).header.flags, kStatusBusy);
    EXPECT_EQ(Read(kHeight.address - 8, 12).header.flags, kStatusBusy);
    EXPECT_EQ(Read(kHeight.address - 4, 4).header.flags, kStatusSuccess);
    EXPECT_EQ(Read(kHeight.address + 4, 4).header.flags, kStatusSuccess);
    m_faults = {};
    EXPECT_EQ(Write(kWidth, 640), kStatusSuccess);
    EXPECT_EQ(Read(kHeight.address, 4).header.flags, kStatusSuccess);
}

TEST_F(DeviceTest, CallsEverythingPendingWithoutEndWhenAsked) {
    m_faults.alwaysPending = true;
    EXPECT_EQ(Read(0, 4).header.command, kPendingAck);
    for (int i = 0; i < 100; ++i) {
        Wait(200);
        const auto packet = Sent();
        ASSERT_TRUE(packet);
        EXPECT_EQ(packet->header.command, kPendingAck);
    }
    EXPECT_EQ(Read(4, 4).header.command, kPendingAck) << "a new command takes the place of the old one";
    m_faults.alwaysPending = false;
    Wait(1);
    const auto answer = Sent();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->header.command, AcknowledgeOf(kReadMem));
}

TEST_F(DeviceTest, TellsTheLengthWritten) {
    const Packet answer = Exchange(Command(kWriteMem, EncodeWrite(kGainRaw.address, NumberBytes(1, 4)), 5));
    EXPECT_EQ(answer.header.command, AcknowledgeOf(kWriteMem));
    EXPECT_EQ(answer.header.requestId, 5);
    EXPECT_EQ(DecodeWrittenLengths(answer.scd), std::vector<std::uint16_t>{4});
}

TEST_F(DeviceTest, RefusesWhatTheFirmwareRefuses) {
    EXPECT_EQ(Write(kWidth, 17), kStatusInvalidParameter);
    EXPECT_EQ(Write(abrm::kSerialNumber, 0), kStatusWriteProtected);
    EXPECT_EQ(Write({0x5000'0000, 4}, 0), kStatusInvalidAddress);
    EXPECT_EQ(Read(0x5000'0000, 4).header.flags, kStatusInvalidAddress);
    EXPECT_EQ(Read(0, 0).header.flags, kStatusInvalidParameter);
    EXPECT_EQ(Read(kDescriptionAddress, kMaxReadData + 1).header.flags, kStatusInvalidParameter);
    EXPECT_EQ(Read(kDescriptionAddress, kMaxReadData).scd.size(), kMaxReadData);
    EXPECT_EQ(Exchange(Command(0x0900, {}, 100)).header.flags, kStatusNotImplemented);
    EXPECT_EQ(Exchange(Command(kReadMem, Bytes(11), 101)).header.flags, kStatusInvalidParameter);
    EXPECT_EQ(Exchange(Command(kWriteMem, Bytes(8), 102)).header.flags, kStatusInvalidParameter);
    EXPECT_TRUE(m_statistics.writes.empty());
}

TEST_F(DeviceTest, DoesNotAnswerAcknowledgesAndOtherChannels) {
    Packet packet = Command(kReadMem | kAcknowledgeBit, {}, 1);
    m_device->Receive(packet, m_now);
    packet = Command(kReadMem, {}, 1);
    packet.header.channel = 1;
    m_device->Receive(packet, m_now);
    EXPECT_FALSE(m_device->TakeOutgoing());
}

TEST_F(DeviceTest, CarriesOutWithoutAnAnswerWhatWantsNone) {
    Packet packet = Command(kWriteMem, EncodeWrite(kGainRaw.address, NumberBytes(9, 4)), 1);
    packet.header.flags = 0;
    m_device->Receive(packet, m_now);
    EXPECT_FALSE(m_device->TakeOutgoing());
    m_id = 1;
    EXPECT_EQ(Number(kGainRaw), 9U);
}

TEST_F(DeviceTest, AnswersARequestIdAgainWithoutCarryingItOutAgain) {
    EXPECT_EQ(Write(kTriggerSoftware, 1), kStatusSuccess);
    for (const std::uint16_t flags :
         {kFlagRequestAck, static_cast<std::uint16_t>(kFlagRequestAck | kFlagCommandResend)}) {
        m_lastWrite.header.flags = flags;
        EXPECT_EQ(Exchange(m_lastWrite).header.requestId, m_id);
    }
    EXPECT_EQ(m_statistics.WritesAt(kTriggerSoftware.address), 1U);
    EXPECT_EQ(m_statistics.resent, 2U);
    EXPECT_EQ(Number(kSoftwareTriggerCount), 1U);
}

TEST_F(DeviceTest, CarriesOutTheFirstRequestIdAfreshAndWritesNothingWithIt) {
    const MemoryRange range{0, 4};
    const Packet read = Command(kReadMem, EncodeRanges({&range, 1}), 0);
    EXPECT_EQ(Exchange(read).header.flags, kStatusSuccess);
    EXPECT_EQ(Exchange(read).header.flags, kStatusSuccess);
    EXPECT_EQ(m_statistics.executed, 2U);
    EXPECT_EQ(Exchange(Command(kWriteMem, EncodeWrite(kGainRaw.address, NumberBytes(1, 4)), 0)).header.flags,
              kStatusInvalidParameter);
    EXPECT_EQ(Number(kGainRaw), 0U);
}

TEST_F(DeviceTest, ANewHostMayUseTheLastRequestIdAgain) {
    EXPECT_EQ(Write(kGainRaw, 1), kStatusSuccess);
    const MemoryRange range{0, 4};
    Exchange(Command(kReadMem, EncodeRanges({&range, 1}), 0));
    m_id = 0;
    EXPECT_EQ(Write(kGainRaw, 2), kStatusSuccess);
    EXPECT_EQ(Number(kGainRaw), 2U);
}

TEST_F(DeviceTest, ReadsStackedBlocks) {
    const std::vector<MemoryRange> ranges{{abrm::kModelName.address, 5}, {kSensorWidth.address, 4}};
    const Bytes scd = Exchange(Command(kReadMemStacked, EncodeRanges(ranges), 1)).scd;
    EXPECT_EQ(scd, (Bytes{'H', '2', '0', '4', '8', 0, 0, 8, 0}));
}

TEST_F(DeviceTest, WritesStackedBlocksUpToTheFirstThatItRefuses) {
    const std::vector<MemoryWrite> writes{{kGainRaw.address, NumberBytes(3, 4)},
                                          {kWidth.address, NumberBytes(17, 4)},
                                          {kBlackLevelRaw.address, NumberBytes(4, 4)}};
    const Packet answer = Exchange(Command(kWriteMemStacked, EncodeStackedWrites(writes), 1));
    EXPECT_EQ(answer.header.flags, kStatusInvalidParameter);
    EXPECT_EQ(DecodeWrittenLengths(answer.scd), (std::vector<std::uint16_t>{4, 0, 0}));
    m_id = 1;
    EXPECT_EQ(Number(kGainRaw), 3U);
    EXPECT_EQ(Number(kBlackLevelRaw), 16U);
}

TEST_F(DeviceTest, PointsToItsDescription) {
    EXPECT_EQ(Load64(Read(abrm::kManifestTableAddress.address, 8).scd, 0), kManifestAddress);
    EXPECT_EQ(Load64(Read(kManifestAddress, 8).scd, 0), 1U);
    const auto entry = DecodeManifestEntry(Read(kManifestAddress + manifest::kFirstEntry, 64).scd);
    ASSERT_TRUE(entry);
    const Bytes& file = m_device->Registers().Description();
    EXPECT_EQ(entry->address, kDescriptionAddress);
    EXPECT_EQ(entry->size, file.size());
    EXPECT_EQ(entry->sha1, base::Sha1(file));
    EXPECT_EQ(entry->schemaMajor, 1);
    EXPECT_EQ(entry->schemaMinor, 1);
    const Bytes last = Read(entry->address + entry->size - 4, 4).scd;
    EXPECT_EQ(last, Bytes(file.end() - 4, file.end()));
    EXPECT_EQ(Read(entry->address + entry->size, 1).header.flags, kStatusInvalidAddress);
}

TEST_F(DeviceTest, AnnouncesThatASlowCommandIsPendingUntilItIsDone) {
    m_faults.pending = milliseconds(500);
    Write(kUserSetSelector, 1);
    m_device->Receive(Command(kWriteMem, EncodeWrite(kUserSetSave.address, NumberBytes(1, 4)), 50), m_now);
    int announced = 0;
    for (int ms = 0; ms < 500; ++ms) {
        while (const auto packet = Sent()) {
            EXPECT_EQ(packet->header.command, kPendingAck);
            EXPECT_EQ(packet->header.requestId, 50);
            EXPECT_GE(DecodePendingAck(packet->scd), 1);
            ++announced;
        }
        EXPECT_EQ(m_statistics.WritesAt(kUserSetSave.address), 0U);
        Wait(1);
    }
    EXPECT_EQ(announced, 3);
    const auto answer = Sent();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->header.command, AcknowledgeOf(kWriteMem));
    EXPECT_EQ(m_statistics.WritesAt(kUserSetSave.address), 1U);
}

TEST_F(DeviceTest, AnswersWhileASlowCommandRuns) {
    m_faults.pending = milliseconds(500);
    const Packet slow = Command(kWriteMem, EncodeWrite(kUserSetLoad.address, NumberBytes(1, 4)), 7);
    EXPECT_EQ(Exchange(slow).header.command, kPendingAck);
    EXPECT_EQ(Exchange(slow).header.command, kPendingAck) << "the command again";
    const MemoryRange range{0, 4};
    EXPECT_EQ(Exchange(Command(kReadMem, EncodeRanges({&range, 1}), 8)).header.flags, kStatusBusy);
    Wait(500);
    EXPECT_EQ(Sent()->header.requestId, 7);
    EXPECT_EQ(m_statistics.WritesAt(kUserSetLoad.address), 1U);
}

TEST_F(DeviceTest, DelaysItsAnswers) {
    m_faults.delay = milliseconds(30);
    const MemoryRange range{0, 4};
    m_device->Receive(Command(kReadMem, EncodeRanges({&range, 1}), 1), m_now);
    EXPECT_EQ(m_device->TakeOutgoing()->ready, m_now + milliseconds(30));
}

TEST_F(DeviceTest, AResetStartsItAnew) {
    Exchange(Command(kWriteMem, EncodeWrite(abrm::kUserDefinedName.address, Bytes{'l', 'e', 'f', 't'}), 60));
    m_id = 60;
    Write(kGainRaw, 5);
    Write(kBaud, 0x80);
    Write(kBaud, 0x80);
    EXPECT_EQ(Write(kDeviceReset, 1), kStatusSuccess);
    EXPECT_EQ(m_device->BitsPerSecond(), 9600U);
    EXPECT_EQ(Number(kGainRaw), 0U);
    EXPECT_EQ(Number(abrm::kUserDefinedName), 0x6C656674U) << "it keeps its name";
}

TEST_F(DeviceTest, LatchesItsTimeStamp) {
    const auto stamp = [this] { return Load64(Read(abrm::kTimestamp.address, 8).scd, 0); };
    Wait(20);
    EXPECT_EQ(stamp(), 0U);
    EXPECT_EQ(Write(abrm::kTimestampLatch, 1), kStatusSuccess);
    Wait(20);
    EXPECT_EQ(stamp(), 20'000'000U);
}

}  // namespace
}  // namespace MarlowSim
