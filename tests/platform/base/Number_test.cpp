/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of numbers in texts
 */

#include "base/Number.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

TEST(ParseNumber, TakesTheWholeText) {
    EXPECT_EQ(base::ParseNumber<int>("-12"), -12);
    EXPECT_EQ(base::ParseNumber<std::uint64_t>("ff", 16), 255U);
    EXPECT_EQ(base::ParseNumber<double>("2.5"), 2.5);
}

TEST(ParseNumber, RefusesEverythingElse) {
    for (const char* text : {"", " 1", "1 ", "+1", "1x", "x", "1.0"})
        EXPECT_EQ(base::ParseNumber<int>(text), std::nullopt) << text;
}

TEST(ParseNumber, RefusesWhatDoesNotFit) {
    EXPECT_EQ(base::ParseNumber<std::uint8_t>("255"), 255);
    EXPECT_EQ(base::ParseNumber<std::uint8_t>("256"), std::nullopt);
    EXPECT_EQ(base::ParseNumber<std::uint8_t>("-1"), std::nullopt);
}

}  // namespace
