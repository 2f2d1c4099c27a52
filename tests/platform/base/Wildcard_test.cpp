/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of patterns with * and ?
 */
#include "base/Wildcard.h"

#include <gtest/gtest.h>

namespace {

using base::MatchesWildcard;

TEST(Wildcard, IsComparedWithTheWholeText) {
    EXPECT_TRUE(MatchesWildcard("H2048", "H2048"));
    EXPECT_FALSE(MatchesWildcard("H2048", "H20480"));
    EXPECT_FALSE(MatchesWildcard("H2048", "h2048"));
}

TEST(Wildcard, StandsForAnythingOrForOne) {
    EXPECT_TRUE(MatchesWildcard("*.cl*rt*", "Vanto.clport"));
    EXPECT_TRUE(MatchesWildcard("**", ""));
    EXPECT_TRUE(MatchesWildcard("H?048", "H2048"));
    EXPECT_FALSE(MatchesWildcard("H?", "H"));
}

}  // namespace
