/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What waiting for several objects allocates
 */
#include <gtest/gtest.h>

#include "failing/FailingAllocation.h"
#include "vanto/WaitObject.h"

namespace {

using namespace Vanto;

class WaitMemory : public testing::Test {
protected:
    WaitMemory() {
        objects.Add(first);
        objects.Add(second);
        objects.WaitForAny(1);  // now the objects have room for one who waits
    }

    const AlertableWaitObject first;
    const AlertableWaitObject second;
    WaitObjects objects;
};

TEST_F(WaitMemory, IsNotNeededForAnyObject) {
    second.Signal();
    std::size_t index = 9;
    const failing::FailingAllocation next(0);
    EXPECT_TRUE(objects.WaitForAny(kWaitForever, &index));
    EXPECT_EQ(index, 1U);
    second.Reset();
    EXPECT_FALSE(objects.WaitForAny(1, &index));
    EXPECT_FALSE(next.HasFailed());
}

TEST_F(WaitMemory, IsNotNeededForAllObjects) {
    second.Signal();
    const failing::FailingAllocation next(0);
    EXPECT_FALSE(objects.WaitForAll(1));
    first.Signal();
    EXPECT_TRUE(objects.WaitForAll(kWaitForever));
    EXPECT_FALSE(next.HasFailed());
}

}  // namespace
