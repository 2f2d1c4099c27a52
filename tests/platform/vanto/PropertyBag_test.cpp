/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/PropertyBag.h"

#include <gtest/gtest.h>

namespace {

using namespace Vanto;

TEST(CPropertyBag, IsModifiedBySetUntilTheFlagsAreCleared) {
    CPropertyBag bag;
    EXPECT_FALSE(bag.IsModified());
    bag.Set("A", "1");
    EXPECT_TRUE(bag.IsModified());
    bag.ClearAccessFlags();
    EXPECT_FALSE(bag.IsModified());
    bag.Set("A", "1");
    EXPECT_TRUE(bag.IsModified());
}

TEST(CPropertyBag, KnowsWhatWasRead) {
    CPropertyBag bag;
    bag.Set("A", "1");
    bag.Set("B", "2");
    gcstring value;
    EXPECT_TRUE(bag.Get("A", value));
    EXPECT_FALSE(bag.Get("C", value));
    EXPECT_TRUE(bag.IsAccessed("A"));
    EXPECT_FALSE(bag.IsAccessed("B"));
    EXPECT_FALSE(bag.IsAccessed("C"));
    bag.ClearAccessFlags();
    EXPECT_FALSE(bag.IsAccessed("A"));
}

}  // namespace
