/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of SHA-1
 */

#include "base/Sha1.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(Sha1, GivesTheKnownSums) {
    EXPECT_EQ(base::ToText(base::Sha1("")), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
    EXPECT_EQ(base::ToText(base::Sha1("abc")), "a9993e364706816aba3e25717850c26c9cd0d89d");
}

TEST(Sha1, OfBytesIsThatOfTheSameText) {
    const std::vector<std::uint8_t> bytes{'a', 'b', 'c'};
    EXPECT_EQ(base::Sha1(bytes), base::Sha1("abc"));
}

}  // namespace
