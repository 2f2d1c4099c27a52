/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The queue of buffer handles
 */

#include "VantoCLSer/stream/HandleQueue.h"

#include <gtest/gtest.h>

#include <deque>

#include "AllocationCount.h"

namespace {

using Vanto::CHandleQueue;

TEST(HandleQueue, GivesBackInTheSameOrder) {
    CHandleQueue queue;
    std::deque<Vanto::StreamBufferHandle> expected;
    for (Vanto::StreamBufferHandle handle = 1; handle < 1000; ++handle) {
        queue.PushBack(handle);
        expected.push_back(handle);
        if (handle % 3 == 0) {
            EXPECT_EQ(queue.PopFront(), expected.front());
            expected.pop_front();
        }
    }
    EXPECT_EQ(queue.Size(), expected.size());
    for (; !expected.empty(); expected.pop_front())
        EXPECT_EQ(queue.PopFront(), expected.front());
    EXPECT_TRUE(queue.IsEmpty());
}

TEST(HandleQueue, KnowsWhatItHolds) {
    CHandleQueue queue;
    EXPECT_FALSE(queue.Contains(0));
    queue.PushBack(4);
    queue.PushBack(4);
    queue.PopFront();
    EXPECT_TRUE(queue.Contains(4));
    queue.PopFront();
    EXPECT_FALSE(queue.Contains(4));
}

TEST(HandleQueue, DoesNotAllocateWhereRoomWasMade) {
    CHandleQueue queue;
    queue.Reserve(10);
    const std::size_t before = stream_test::AllocationsOfThisThread();
    for (int round = 0; round < 1000; ++round) {
        for (Vanto::StreamBufferHandle handle = 0; handle < 10; ++handle)
            queue.PushBack(handle);
        for (int count = 0; count < 7; ++count)
            queue.PopFront();
        queue.Clear();
    }
    EXPECT_EQ(stream_test::AllocationsOfThisThread(), before);
}

}  // namespace
