/* SPDX-License-Identifier: Apache-2.0 */
#include "base/BaudRates.h"

#include <gtest/gtest.h>

namespace {

using namespace base;

TEST(BaudRate, TableGoesUpByFlagSpeedAndEntryValue) {
    for (std::size_t i = 0; i < kBaudRates.size(); ++i)
        EXPECT_EQ(kBaudRates[i].flag, 1u << i);
    for (std::size_t i = 1; i < kBaudRates.size(); ++i) {
        EXPECT_GT(kBaudRates[i].bitsPerSecond, kBaudRates[i - 1].bitsPerSecond);
        EXPECT_GT(kBaudRates[i].entryValue, kBaudRates[i - 1].entryValue);
    }
}

TEST(BaudRate, IsFoundByEachOfItsNumbers) {
    for (const auto& rate : kBaudRates) {
        EXPECT_EQ(FindBaudRateByFlag(rate.flag), &rate);
        EXPECT_EQ(FindBaudRateBySpeed(rate.bitsPerSecond), &rate);
        EXPECT_EQ(FindBaudRateByEntryValue(rate.entryValue), &rate);
    }
    EXPECT_EQ(FindBaudRateBySpeed(115200)->entryValue, 20u);
}

TEST(BaudRate, OthersAreNotFound) {
    for (const std::uint32_t flag : {0u, 0x03u, 0x100u, 0x40000000u})
        EXPECT_EQ(FindBaudRateByFlag(flag), nullptr) << flag;
    for (const std::uint32_t value : {0u, 14u, 16u, 24u, 255u})
        EXPECT_EQ(FindBaudRateByEntryValue(value), nullptr) << value;
    EXPECT_EQ(FindBaudRateByEntryValue(15 - (std::int64_t{1} << 32)), nullptr);
    EXPECT_EQ(FindBaudRateBySpeed(9601), nullptr);
}

}  // namespace
