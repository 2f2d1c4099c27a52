/* SPDX-License-Identifier: Apache-2.0 */
#include "Base/GCUtilities.h"

#include <gtest/gtest.h>

#include "os/Environment.h"

namespace {

using GenICam::gcstring;

TEST(GCUtilities, ReplacesEnvironmentVariablesOnce) {
    os::SetEnvironment("GCBASE_TEST_A", "$(GCBASE_TEST_A) b");
    gcstring text("x/$(GCBASE_TEST_A)/$(GCBASE_TEST_NONE)/$(open");
    GenICam::ReplaceEnvironmentVariables(text);
    EXPECT_EQ(text, "x/$(GCBASE_TEST_A) b//$(open");
    gcstring blanks("a $(GCBASE_TEST_NONE) b");
    GenICam::ReplaceEnvironmentVariables(blanks, true);
    EXPECT_EQ(blanks, "a%20%20b");
}

TEST(GCUtilities, KeepsBlanksUnlessAskedToReplaceThem) {
    gcstring text("  a  b ");
    GenICam::ReplaceEnvironmentVariables(text);
    EXPECT_EQ(text, "  a  b ");
    GenICam::ReplaceEnvironmentVariables(text, true);
    EXPECT_EQ(text, "%20%20a%20%20b%20");
}

TEST(GCUtilities, TakesParenthesesWithoutADollarSignAsText) {
    gcstring text("a) (b) $c ) $(");
    GenICam::ReplaceEnvironmentVariables(text);
    EXPECT_EQ(text, "a) (b) $c ) $(");
}

}  // namespace
