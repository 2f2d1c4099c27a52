/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The order of ports, and what becomes of several lists
 */

#include "PortList.h"

#include <gtest/gtest.h>

namespace ClSerTty {
namespace {

TEST(ComesBefore, CountsDigitsAsNumbers) {
    EXPECT_TRUE(ComesBefore("cam2", "cam10"));
    EXPECT_FALSE(ComesBefore("cam10", "cam2"));
}

TEST(ComesBefore, PutsAShorterNameFirst) {
    EXPECT_TRUE(ComesBefore("cam", "cam0"));
    EXPECT_FALSE(ComesBefore("cam0", "cam"));
}

TEST(ComesBefore, ToldApartOnlyByZerosStaysAnOrder) {
    EXPECT_NE(ComesBefore("cam1", "cam01"), ComesBefore("cam01", "cam1"));
    EXPECT_FALSE(ComesBefore("cam1", "cam1"));
}

TEST(ComesBefore, DoesNotOverflowOnLongNumbers) {
    EXPECT_TRUE(ComesBefore("c99999999999999999999999999998", "c99999999999999999999999999999"));
}

TEST(MergePorts, KeepsTheFirstOfTwoEqualNames) {
    const PortList merged = MergePorts({{{"a", "/one"}}, {{"a", "/two"}, {"b", "/three"}}});
    EXPECT_EQ(merged, (PortList{{"a", "/one"}, {"b", "/three"}}));
}

TEST(MergePorts, SortsByName) {
    const PortList merged = MergePorts({{{"ttyS10", ""}, {"ttyS9", ""}}, {{"cam", ""}}});
    EXPECT_EQ(merged, (PortList{{"cam", ""}, {"ttyS9", ""}, {"ttyS10", ""}}));
}

}  // namespace
}  // namespace ClSerTty
