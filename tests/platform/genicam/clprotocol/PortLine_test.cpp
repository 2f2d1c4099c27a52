/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the lines of ports
 */

#include "PortLine.h"

#include <gtest/gtest.h>

namespace {

using CLProtocol::PortLine;
using CLProtocol::PortLines;

TEST(PortLines, LendTheLineOfAPortAgain) {
    PortLines lines;
    const PortLine* const first = lines.Lend("a").get();
    EXPECT_EQ(lines.Lend("a").get(), first);
    EXPECT_NE(lines.Lend("b").get(), first);
    EXPECT_EQ(lines.Lend("a").get(), first);
}

TEST(PortLines, LendNoLineTwiceAtATime) {
    PortLines lines;
    const auto first = lines.Lend("a");
    const auto second = lines.Lend("a");
    EXPECT_NE(first, second);
    EXPECT_NE(lines.Lend("a"), second);
}

}  // namespace
