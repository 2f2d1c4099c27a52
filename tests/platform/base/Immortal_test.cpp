/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of objects that are never destroyed
 */

#include "base/Immortal.h"

#include <gtest/gtest.h>

namespace base {
namespace {

struct Counted {
    ~Counted() { ++destroyed; }
    static inline int destroyed = 0;
    int value = 7;
};

TEST(Immortal, MakesItsValueAndNeverDestroysIt) {
    {
        Immortal<Counted> immortal;
        EXPECT_EQ(immortal.Get().value, 7);
    }
    EXPECT_EQ(Counted::destroyed, 0);
}

}  // namespace
}  // namespace base
