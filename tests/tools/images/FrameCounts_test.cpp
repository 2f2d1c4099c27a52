/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what is told of a grab's frames
 */
#include "images/FrameCounts.h"

#include <gtest/gtest.h>

namespace {

using tools::FrameCounts;

TEST(FrameCounts, AreThoseOfTheStream) {
    FrameCounts counts;
    counts.Update({.delivered = 5, .missed = 4, .cut = 3, .failed = 2, .bytes = 1});
    EXPECT_EQ(counts.Delivered(), 5U);
    EXPECT_EQ(counts.Dropped(), 4U);
    EXPECT_EQ(counts.Cut(), 3U);
    EXPECT_EQ(counts.Failed(), 2U);
    EXPECT_EQ(counts.Bytes(), 1U);
}

TEST(FrameCounts, TakeNoTimeUntilTheSecondFrame) {
    FrameCounts counts;
    counts.Update({.failed = 1});
    EXPECT_EQ(counts.Seconds(), 0.0);
    counts.Update({.delivered = 1, .failed = 1});
    EXPECT_EQ(counts.Seconds(), 0.0);
    while (counts.Seconds() == 0.0)
        counts.Update({.delivered = counts.Delivered() + 1});
    const double seconds = counts.Seconds();
    counts.Update({.delivered = counts.Delivered(), .failed = 1});
    EXPECT_EQ(counts.Seconds(), seconds);
}

}  // namespace
