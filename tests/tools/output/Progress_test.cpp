/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what is told of work that goes on
 */
#include "output/Progress.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::milliseconds;
using tools::PartText;
using tools::Progress;

TEST(PartText, TellsPercentAndTheTimeLeft) {
    EXPECT_EQ(PartText(25, 100, Progress::Unit::kThings, milliseconds(1000)), "25%, 3.0 s left");
    EXPECT_EQ(PartText(2, 3, Progress::Unit::kThings, milliseconds(100)), "66%, 50 ms left");
}

TEST(PartText, TellsTheRateOfBytes) {
    EXPECT_EQ(PartText(50'000, 200'000, Progress::Unit::kBytes, milliseconds(2000)), "25%, 25.0 kB/s, 6.0 s left");
}

TEST(PartText, KnowsNoTimeLeftAtTheBeginning) {
    EXPECT_EQ(PartText(0, 3, Progress::Unit::kThings, milliseconds(1000)), "0%");
}

TEST(PartText, EndsWithAll) {
    EXPECT_EQ(PartText(4, 3, Progress::Unit::kThings, milliseconds(1000)), "100%, 0 ms left");
}

}  // namespace
