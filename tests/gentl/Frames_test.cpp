/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Many large frames, and a consumer that stalls, kills waits, flushes and starts anew: each frame is accounted for
 */
#include <iostream>
#include <random>

#include "FrameMark.h"
#include "tests/gentl/Consumer.h"
#include "tests/gentl/PortNodes.h"

namespace gentl_test {

namespace {

class Frames : public Consumer {
protected:
    Frames() {
        AddCamera("FrameRate=400");
        OpenStream();
        const PortNodes nodes(remote, Description(remote));
        nodes.Set("Width", "1024");
        nodes.Set("Height", "1024");
        Announce(6);
        Register();
    }

    struct Run {
        std::uint64_t fetched = 0;   // frames
        std::uint64_t lastId = 0;    // of them
        std::uint64_t missing = 0;   // numbers between them
        std::uint64_t killed = 0;    // waits
        std::uint64_t underrun = 0;  // counted by the stream before
        std::uint64_t started = 0;   // counted by the stream before
    };

    // A buffer, or null where a wait was killed or nothing came.
    BUFFER_HANDLE Fetch(Run& run, std::uint64_t timeout) const {
        EVENT_NEW_BUFFER_DATA data{};
        std::size_t size = sizeof data;
        const GC_ERROR result = TL().EventGetData(event, &data, &size, timeout);
        if (result == GC_ERR_ABORT)
            ++run.killed;
        return result == GC_ERR_SUCCESS ? data.BufferHandle : nullptr;
    }

    void Account(Run& run, BUFFER_HANDLE buffer) const {
        if (!BufferFlag(buffer, BUFFER_INFO_NEW_DATA))
            return;  // flushed
        const auto id = BufferValue<std::uint64_t>(buffer, BUFFER_INFO_FRAMEID, INFO_DATATYPE_UINT64);
        EXPECT_GT(id, run.lastId);
        run.missing += id - run.lastId - 1;
        run.lastId = id;
        ++run.fetched;
        const auto base = BufferValue<void*>(buffer, BUFFER_INFO_BASE, INFO_DATATYPE_PTR);
        EXPECT_TRUE(grabber::ReadFrameMark({static_cast<const std::uint8_t*>(base), kFrameSize}).has_value());
    }

    void Disturb(std::uint32_t what) const {
        switch (what % 16) {
            case 0:
                std::this_thread::sleep_for(std::chrono::milliseconds(20));  // longer than the buffers last
                break;
            case 1:
                EXPECT_EQ(TL().DSFlushQueue(stream, ACQ_QUEUE_INPUT_TO_OUTPUT), GC_ERR_SUCCESS);
                break;
            case 2:
                EXPECT_EQ(TL().EventKill(event), GC_ERR_SUCCESS);
                break;
            default:
                break;
        }
    }

    Run GrabSome(std::uint64_t frames) {
        Run run;
        run.underrun = StreamCount(STREAM_INFO_NUM_UNDERRUN);
        run.started = StreamCount(STREAM_INFO_NUM_STARTED);
        EXPECT_EQ(TL().DSFlushQueue(stream, ACQ_QUEUE_ALL_TO_INPUT), GC_ERR_SUCCESS);
        Start();
        while (run.fetched < frames && !HasFailure()) {
            if (const BUFFER_HANDLE buffer = Fetch(run, kPatience)) {
                Account(run, buffer);
                EXPECT_EQ(TL().DSQueueBuffer(stream, buffer), GC_ERR_SUCCESS);
            }
            Disturb(static_cast<std::uint32_t>(m_random()));
        }
        Stop();
        while (StreamSize(STREAM_INFO_NUM_AWAIT_DELIVERY) > 0)
            if (const BUFFER_HANDLE buffer = Fetch(run, 0))
                Account(run, buffer);
        return run;
    }

    static constexpr std::size_t kFrameSize = 1024 * 1024;
    std::mt19937 m_random{7};
};

TEST_F(Frames, AreAllAccountedForWhateverTheConsumerDoes) {
    ASSERT_EQ(PayloadSize(), kFrameSize);
    const std::uint64_t wanted = NumberFromEnvironment("VANTO_GENTL_FRAMES", 300);
    std::uint64_t fetched = 0;
    std::uint64_t lost = 0;
    while (fetched < wanted && !HasFailure()) {
        const Run run = GrabSome(1 + m_random() % 100);
        EXPECT_EQ(run.fetched, StreamCount(STREAM_INFO_NUM_DELIVERED));
        EXPECT_EQ(run.missing, StreamCount(STREAM_INFO_NUM_UNDERRUN) - run.underrun);
        EXPECT_EQ(run.lastId, StreamCount(STREAM_INFO_NUM_STARTED) - run.started);
        fetched += run.fetched;
        lost += run.missing;
    }
    std::cout << fetched << " frames of 1 MiB, " << lost << " without a buffer\n";
}

}  // namespace

}  // namespace gentl_test
