/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of patterns for names of features
 */
#include "features/FeatureFilter.h"

#include <gtest/gtest.h>

namespace {

using tools::MatchesGlob;

TEST(MatchesGlob, ComparesWithoutCase) {
    EXPECT_TRUE(MatchesGlob("TriggerMode", "triggermode"));
    EXPECT_FALSE(MatchesGlob("TriggerMode", "Trigger"));
}

TEST(MatchesGlob, TakesAnyLettersForAStar) {
    EXPECT_TRUE(MatchesGlob("TriggerMode", "Trigger*"));
    EXPECT_TRUE(MatchesGlob("TriggerMode", "*g*Mode"));
    EXPECT_TRUE(MatchesGlob("", "**"));
    EXPECT_FALSE(MatchesGlob("TriggerModes", "*Mode"));
}

TEST(MatchesGlob, TakesOneLetterForAQuestionMark) {
    EXPECT_TRUE(MatchesGlob("Line1", "Line?"));
    EXPECT_FALSE(MatchesGlob("Line", "Line?"));
}

TEST(MatchesGlob, EndsForManyStars) {
    EXPECT_FALSE(MatchesGlob(std::string(200, 'a'), "*a*a*a*a*a*a*a*a*a*b"));
}

}  // namespace
