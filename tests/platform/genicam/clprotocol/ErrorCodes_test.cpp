/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the texts of error codes
 */

#include "ErrorCodes.h"

#include <gtest/gtest.h>

namespace {

using CLProtocol::StandardErrorText;

TEST(ErrorCodes, NamesStandardCodes) {
    EXPECT_STREQ(StandardErrorText(-10003), "port in use");
    EXPECT_STREQ(StandardErrorText(-10004), "time-out");
    EXPECT_STREQ(StandardErrorText(-10099), "function not found");
    EXPECT_STREQ(StandardErrorText(-20101), "no device found");
    EXPECT_STREQ(StandardErrorText(20101), "a write is still pending");
    EXPECT_STREQ(StandardErrorText(-30209), "no camera answers");
}

TEST(ErrorCodes, TellsDriversOwnFromUnknown) {
    EXPECT_STREQ(StandardErrorText(-30000), "error of the driver");
    EXPECT_STREQ(StandardErrorText(-30999), "error of the driver");
    EXPECT_STREQ(StandardErrorText(-31000), "unknown error");
    EXPECT_STREQ(StandardErrorText(-1), "unknown error");
}

}  // namespace
