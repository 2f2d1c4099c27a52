/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a frame costs the consumer's thread
 */
#include "AllocationCount.h"
#include "tests/gentl/Consumer.h"

namespace gentl_test {

namespace {

class Allocations : public Consumer {
protected:
    void TakeFrames(int count) const {
        for (int frame = 0; frame < count; ++frame)
            ASSERT_EQ(TL().DSQueueBuffer(stream, Next()), GC_ERR_SUCCESS);
    }
};

TEST_F(Allocations, AreNoneBetweenAFrameAndItsBufferInTheQueue) {
    AddCamera("FrameRate=400");
    OpenStream();
    Announce();
    Register();
    QueueAll();
    Start();
    TakeFrames(20);
    const std::size_t before = stream_test::AllocationsOfThisThread();
    TakeFrames(100);
    EXPECT_EQ(stream_test::AllocationsOfThisThread(), before);
    Stop();
    Announce(1);
    EXPECT_GT(stream_test::AllocationsOfThisThread(), before) << "the producer's allocations are not counted";
}

}  // namespace

}  // namespace gentl_test
