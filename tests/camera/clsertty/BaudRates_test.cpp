/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Baud-rate flags
 */

#include "BaudRates.h"

#include <gtest/gtest.h>

namespace ClSerTty {
namespace {

TEST(BaudRates, EachFlagHasItsRate) {
    const std::uint32_t rates[] = {9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600};
    for (std::uint32_t bit = 0; bit < 8; ++bit)
        EXPECT_EQ(BitsPerSecond(1U << bit), rates[bit]);
}

TEST(BaudRates, NoneSeveralAndUnknownFlagsHaveNoRate) {
    for (std::uint32_t flag : {0x0U, 0x3U, 0x100U, 0x40000000U, 0xFFU})
        EXPECT_EQ(BitsPerSecond(flag), 0U) << flag;
}

TEST(BaudRates, ALimitLeavesTheSlowerOnes) {
    EXPECT_EQ(BaudRatesUpTo(921600), 0xFFU);
    EXPECT_EQ(BaudRatesUpTo(115200), 0x1FU);
    EXPECT_EQ(BaudRatesUpTo(9599), 0U);
}

TEST(BaudRates, FastestIsTheHighestFlag) {
    EXPECT_EQ(FastestBaudRate(0x15), 0x10U);
    EXPECT_EQ(FastestBaudRate(0), 0U);
}

}  // namespace
}  // namespace ClSerTty
