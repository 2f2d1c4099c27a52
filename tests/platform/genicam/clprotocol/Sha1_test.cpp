/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of SHA-1
 */

#include "Sha1.h"

#include <gtest/gtest.h>

namespace {

TEST(Sha1, GivesTheKnownSums) {
    EXPECT_EQ(CLProtocol::Sha1Of(""), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
    EXPECT_EQ(CLProtocol::Sha1Of("abc"), "a9993e364706816aba3e25717850c26c9cd0d89d");
}

}  // namespace
