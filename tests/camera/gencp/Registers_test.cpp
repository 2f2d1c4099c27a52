/* SPDX-License-Identifier: Apache-2.0 */
#include "gencp/Registers.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace gencp;

// What GenCP 1.3 says. The driver and the simulated cameras share the names, so that a wrong number here would be the
// same wrong number on both ends of every other test.
struct Place {
    Register where;
    std::uint64_t address;
    std::uint32_t length;
};

void ExpectPlaces(const std::vector<Place>& places) {
    for (const auto& [where, address, length] : places) {
        EXPECT_EQ(where.address, address);
        EXPECT_EQ(where.length, length) << std::hex << address;
    }
}

TEST(Registers, OfTheBootstrapMapLieWhereGenCpSays) {
    using namespace abrm;
    ExpectPlaces({{kGenCpVersion, 0x000, 4},
                  {kManufacturerName, 0x004, 64},
                  {kModelName, 0x044, 64},
                  {kFamilyName, 0x084, 64},
                  {kDeviceVersion, 0x0C4, 64},
                  {kManufacturerInfo, 0x104, 64},
                  {kSerialNumber, 0x144, 64},
                  {kUserDefinedName, 0x184, 64},
                  {kDeviceCapability, 0x1C4, 8},
                  {kMaxDeviceResponseTime, 0x1CC, 4},
                  {kManifestTableAddress, 0x1D0, 8},
                  {kSbrmAddress, 0x1D8, 8},
                  {kDeviceConfiguration, 0x1E0, 8},
                  {kHeartbeatTimeout, 0x1E8, 4},
                  {kMessageChannelId, 0x1EC, 4},
                  {kTimestamp, 0x1F0, 8},
                  {kTimestampLatch, 0x1F8, 4},
                  {kTimestampIncrement, 0x1FC, 8},
                  {kAccessPrivilege, 0x204, 4},
                  {kImplementationEndianness, 0x20C, 4},
                  {kSoftwareInterfaceVersion, 0x210, 64}});
}

TEST(Registers, OfTheSerialLinkLieWhereGenCpSays) {
    ExpectPlaces({{sbrm::kSupportedBaudRates, 0, 4}, {sbrm::kCurrentBaudRate, 4, 4}});
    EXPECT_EQ(sbrm::kSize, 8U);
    EXPECT_EQ(sbrm::kCurrentBaudRate.At(0x1000).address, 0x1004U);
    EXPECT_EQ(sbrm::kCurrentBaudRate.At(0x1000).End(), 0x1008U);
}

TEST(Registers, OfTheManifestLieWhereGenCpSays) {
    using namespace manifest;
    ExpectPlaces({{kEntryCount, 0, 8},
                  {kFileVersion, 0, 4},
                  {kFileFormat, 4, 4},
                  {kFileAddress, 8, 8},
                  {kFileSize, 16, 8},
                  {kFileSha1, 24, 20}});
    EXPECT_EQ(kFirstEntry, 8U);
    EXPECT_EQ(kEntrySize, 64U);
}

TEST(Registers, BitsOfTheCapabilityAreThoseOfGenCp) {
    using namespace capability;
    EXPECT_EQ(kUserDefinedName, 0x1U);
    EXPECT_EQ(kAccessPrivilege, 0x2U);
    EXPECT_EQ(kMessageChannel, 0x4U);
    EXPECT_EQ(kTimestamp, 0x8U);
    EXPECT_EQ(kEncodingMask << kEncodingShift, 0xF0U);
    EXPECT_EQ(kEncodingAscii, 0U);
    EXPECT_EQ(kEncodingUtf8, 1U);
    EXPECT_EQ(kEncodingUtf16, 2U);
    EXPECT_EQ(kFamilyName, 0x100U);
    EXPECT_EQ(kSbrm, 0x200U);
    EXPECT_EQ(kEndiannessRegister, 0x400U);
    EXPECT_EQ(kWrittenLength, 0x800U);
    EXPECT_EQ(kMultiEvent, 0x1000U);
    EXPECT_EQ(kStackedCommands, 0x2000U);
    EXPECT_EQ(kSoftwareInterfaceVersion, 0x4000U);
    EXPECT_EQ(configuration::kHeartbeatEnable, 1U);
    EXPECT_EQ(configuration::kMultiEventEnable, 2U);
}

}  // namespace
