/* SPDX-License-Identifier: Apache-2.0 */
#include "gencp/Protocol.h"

#include <gtest/gtest.h>

namespace {

using namespace gencp;

// What GenCP 1.3 says: the driver and the simulated cameras share these numbers.

TEST(Protocol, PartsOfAPacketLieWhereGenCpSays) {
    EXPECT_EQ(kCcdChecksumOffset, 2U);
    EXPECT_EQ(kScdChecksumOffset, 4U);
    EXPECT_EQ(kChannelOffset, 6U);
    EXPECT_EQ(kFlagsOffset, 8U);
    EXPECT_EQ(kCommandOffset, 10U);
    EXPECT_EQ(kScdLengthOffset, 12U);
    EXPECT_EQ(kRequestIdOffset, 14U);
    EXPECT_EQ(kHeaderSize, 16U);
    EXPECT_EQ(kMaxPacketSize, 1024U);
}

TEST(Protocol, CommandsHaveTheirIds) {
    EXPECT_EQ(kReadMem, 0x0800);
    EXPECT_EQ(AcknowledgeOf(kReadMem), 0x0801);
    EXPECT_EQ(kWriteMem, 0x0802);
    EXPECT_EQ(kPendingAck, 0x0805);
    EXPECT_EQ(kReadMemStacked, 0x0806);
    EXPECT_EQ(kWriteMemStacked, 0x0808);
    EXPECT_EQ(kEvent, 0x0C00);
    EXPECT_EQ(kFlagRequestAck, 0x4000);
    EXPECT_EQ(kFlagCommandResend, 0x8000);
}

TEST(Protocol, RefusalsHaveTheirCodes) {
    EXPECT_EQ(kStatusNotImplemented, 0x8001);
    EXPECT_EQ(kStatusInvalidParameter, 0x8002);
    EXPECT_EQ(kStatusInvalidAddress, 0x8003);
    EXPECT_EQ(kStatusWriteProtected, 0x8004);
    EXPECT_EQ(kStatusBadAlignment, 0x8005);
    EXPECT_EQ(kStatusAccessDenied, 0x8006);
    EXPECT_EQ(kStatusBusy, 0x8007);
    EXPECT_EQ(kStatusMessageTimeout, 0x800B);
    EXPECT_EQ(kStatusInvalidHeader, 0x800E);
    EXPECT_EQ(kStatusWrongConfiguration, 0x800F);
    EXPECT_EQ(kStatusGenericError, 0x8FFF);
}

TEST(Protocol, TimesAreThoseOfGenCp) {
    EXPECT_EQ(kMaxResends, 3U);
    EXPECT_EQ(kFirstReadTimeoutMs, 50U);
    EXPECT_EQ(kFirstCommandTimeoutMs, 300U);
    EXPECT_EQ(kMaxDeviceResponseTimeMs, 300U);
    EXPECT_EQ(kBaudRateConfirmMs, 250U);
    EXPECT_EQ(kBaudRateRevertMs, 500U);
    EXPECT_EQ(kBitsPerByte, 10U);
}

}  // namespace
