/* SPDX-License-Identifier: Apache-2.0 */
#include "gencp/BaudRate.h"

#include <gtest/gtest.h>

namespace {

using namespace gencp;

TEST(TransferTime, IsTenBitsAByte) {
    EXPECT_EQ(TransferTime(960, 9600), std::chrono::seconds(1));
    EXPECT_EQ(TransferTime(0, 9600), std::chrono::nanoseconds(0));
    EXPECT_EQ(TransferTime(1, 115200), std::chrono::nanoseconds(86806));
}

}  // namespace
