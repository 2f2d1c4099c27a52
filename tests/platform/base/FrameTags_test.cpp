/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of missing frames
 */
#include "base/FrameTags.h"

#include <gtest/gtest.h>

namespace {

using base::FrameTags;

TEST(FrameTags, BeginAnywhere) {
    EXPECT_EQ(FrameTags().Add(12345), 0U);
}

TEST(FrameTags, CountWhatIsLeftOut) {
    FrameTags tags;
    tags.Add(1);
    EXPECT_EQ(tags.Add(2), 0U);
    EXPECT_EQ(tags.Add(6), 3U);
}

TEST(FrameTags, BeginAnewBehindTheLastNumber) {
    FrameTags tags;
    tags.Add(0xFFFFFFFE);
    EXPECT_EQ(tags.Add(1), 2U);
}

TEST(FrameTags, CountNoFailedFrameAsMissing) {
    FrameTags tags;
    tags.Add(1);
    tags.AddFailed();
    tags.AddFailed();
    EXPECT_EQ(tags.Add(5), 1U);
    EXPECT_EQ(tags.Add(7), 1U) << "the failed ones are settled";
}

TEST(FrameTags, SayNothingWhenTheyGoBackOrStay) {
    FrameTags tags;
    tags.Add(100);
    EXPECT_EQ(tags.Add(100), 0U);
    EXPECT_EQ(tags.Add(7), 0U);
    EXPECT_EQ(tags.Add(9), 1U);
}

TEST(FrameTags, CountMoreFailedOnesThanAreMissing) {
    FrameTags tags;
    tags.Add(1);
    for (int failed = 0; failed < 5; ++failed)
        tags.AddFailed();
    EXPECT_EQ(tags.Add(3), 0U);
}

}  // namespace
