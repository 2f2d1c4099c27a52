/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Buffers, acquisition and the event NEW_BUFFER
 */
#include <utility>

#include "FrameMark.h"
#include "tests/gentl/StreamConsumer.h"

namespace gentl_test {

namespace {

class Streams : public StreamConsumer {};

TEST_F(Streams, BuffersAreAnnouncedInOrderWithoutHoles) {
    Prepare(3);
    EXPECT_EQ(StreamSize(STREAM_INFO_NUM_ANNOUNCED), 3u);
    EXPECT_EQ(TL().DSRevokeBuffer(stream, buffers[1], nullptr, nullptr), GC_ERR_SUCCESS);
    BUFFER_HANDLE second = nullptr;
    EXPECT_EQ(TL().DSGetBufferID(stream, 1, &second), GC_ERR_SUCCESS);
    EXPECT_EQ(second, buffers[2]);
    EXPECT_EQ(TL().DSGetBufferID(stream, 2, &second), GC_ERR_INVALID_INDEX);
    EXPECT_EQ(TL().DSRevokeBuffer(stream, buffers[1], nullptr, nullptr), GC_ERR_INVALID_HANDLE);
}

TEST_F(Streams, TheConsumersMemoryIsGivenBack) {
    Prepare(0);
    std::vector<char> memory(100);
    int mine = 5;
    BUFFER_HANDLE buffer = nullptr;
    ASSERT_EQ(TL().DSAnnounceBuffer(stream, memory.data(), memory.size(), &mine, &buffer), GC_ERR_SUCCESS);
    BUFFER_HANDLE second = nullptr;
    EXPECT_EQ(TL().DSAnnounceBuffer(stream, memory.data(), memory.size(), nullptr, &second), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(TL().DSAnnounceBuffer(stream, nullptr, 5, nullptr, &second), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(TL().DSAnnounceBuffer(stream, memory.data(), 0, nullptr, &second), GC_ERR_INVALID_PARAMETER);
    void* base = nullptr;
    void* user = nullptr;
    EXPECT_EQ(TL().DSRevokeBuffer(stream, buffer, &base, &user), GC_ERR_SUCCESS);
    EXPECT_EQ(base, memory.data());
    EXPECT_EQ(user, &mine);
}

TEST_F(Streams, TheProducersMemoryIsNotGivenAway) {
    Prepare(1);
    void* base = &base;
    EXPECT_EQ(TL().DSRevokeBuffer(stream, buffers[0], &base, nullptr), GC_ERR_SUCCESS);
    EXPECT_EQ(base, nullptr);
}

TEST_F(Streams, AQueuedBufferIsTheProducers) {
    Prepare(1);
    EXPECT_FALSE(BufferFlag(buffers[0], BUFFER_INFO_IS_QUEUED));
    QueueAll();
    EXPECT_TRUE(BufferFlag(buffers[0], BUFFER_INFO_IS_QUEUED));
    EXPECT_EQ(TL().DSQueueBuffer(stream, buffers[0]), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(TL().DSRevokeBuffer(stream, buffers[0], nullptr, nullptr), GC_ERR_BUSY);
    EXPECT_EQ(Flush(ACQ_QUEUE_ALL_DISCARD), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().DSRevokeBuffer(stream, buffers[0], nullptr, nullptr), GC_ERR_SUCCESS);
}

TEST_F(Streams, FramesArriveWithTheirFacts) {
    Prepare(3);
    Register();
    QueueAll();
    Start();
    EXPECT_TRUE(IsGrabbing());
    std::uint64_t last = 0;
    for (std::uint64_t number = 1; number <= 10; ++number) {
        const BUFFER_HANDLE buffer = Next();
        ASSERT_NE(buffer, nullptr);
        EXPECT_GE(FrameId(buffer), number);
        EXPECT_GT(FrameId(buffer), std::exchange(last, FrameId(buffer)));
        EXPECT_LE(FrameId(buffer), StreamCount(STREAM_INFO_NUM_STARTED));
        EXPECT_EQ(BufferSize(buffer, BUFFER_INFO_WIDTH), 2048u);
        EXPECT_EQ(BufferSize(buffer, BUFFER_INFO_HEIGHT), 2048u);
        EXPECT_EQ(BufferSize(buffer, BUFFER_INFO_SIZE_FILLED), PayloadSize());
        EXPECT_EQ(BufferValue<std::uint64_t>(buffer, BUFFER_INFO_PIXELFORMAT, INFO_DATATYPE_UINT64), 0x01080001u);
        EXPECT_FALSE(BufferFlag(buffer, BUFFER_INFO_IS_INCOMPLETE));
        EXPECT_TRUE(BufferFlag(buffer, BUFFER_INFO_NEW_DATA));
        EXPECT_FALSE(BufferFlag(buffer, BUFFER_INFO_CONTAINS_CHUNKDATA));
        EXPECT_EQ(TL().DSQueueBuffer(stream, buffer), GC_ERR_SUCCESS);
    }
    Stop();
    EXPECT_FALSE(IsGrabbing());
    EXPECT_EQ(TL().DSStopAcquisition(stream, ACQ_STOP_FLAGS_DEFAULT), GC_ERR_RESOURCE_IN_USE);
}

TEST_F(Streams, TimeStampsGrow) {
    Prepare(2);
    Register();
    QueueAll();
    Start();
    const BUFFER_HANDLE first = Next();
    const BUFFER_HANDLE second = Next();
    ASSERT_NE(second, nullptr);
    const auto time = [&](BUFFER_HANDLE buffer) {
        return BufferValue<std::uint64_t>(buffer, BUFFER_INFO_TIMESTAMP_NS, INFO_DATATYPE_UINT64);
    };
    EXPECT_LT(time(first), time(second));
    Stop();
}

TEST_F(Streams, EndByThemselvesAfterTheFramesThatWereWanted) {
    Prepare(4);
    Register();
    QueueAll();
    Start(3);
    for (int frame = 0; frame < 3; ++frame) {
        const BUFFER_HANDLE buffer = Next();
        ASSERT_NE(buffer, nullptr);
        EXPECT_EQ(TL().DSQueueBuffer(stream, buffer), GC_ERR_SUCCESS);
    }
    EXPECT_EQ(Next(100), nullptr);
    EXPECT_FALSE(IsGrabbing());
    EXPECT_EQ(StreamCount(STREAM_INFO_NUM_DELIVERED), 3u);
    Stop();
}

TEST_F(Streams, WithoutAQueuedBufferFramesAreLostAndCounted) {
    Prepare(2, "FrameRate=1000");
    Register();
    QueueAll();
    Start();
    std::uint64_t lost = 0;
    std::uint64_t last = 0;
    // A busy machine may let the frame grabber sleep as well.
    for (int tries = 0; tries < 1000 && lost == 0; ++tries) {
        ASSERT_TRUE(WaitFor(2));
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        while (const BUFFER_HANDLE buffer = Next(0)) {
            lost += FrameId(buffer) - last - 1;
            last = FrameId(buffer);
        }
        QueueAll();
    }
    EXPECT_GT(lost, 0U);
    EXPECT_GE(StreamCount(STREAM_INFO_NUM_UNDERRUN), lost);
    EXPECT_GE(StreamCount(STREAM_INFO_NUM_STARTED), last);
    Stop();
}

TEST_F(Streams, StartBeforeAnythingIsQueued) {
    Prepare(2);
    Start();
    Register();
    EXPECT_EQ(Next(50), nullptr);
    QueueAll();
    EXPECT_NE(Next(), nullptr);
    Stop();
}

TEST_F(Streams, NeedABufferToStart) {
    Prepare(0);
    EXPECT_EQ(TL().DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, 0), GC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(TL().DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, 5), GC_ERR_INVALID_BUFFER);
    EXPECT_EQ(TL().DSStartAcquisition(stream, 1, 5), GC_ERR_NOT_IMPLEMENTED);
    Announce(1);
    Start();
    EXPECT_EQ(TL().DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, 5), GC_ERR_RESOURCE_IN_USE);
    EXPECT_EQ(TL().DSStopAcquisition(stream, 2), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(TL().DSStopAcquisition(stream, ACQ_STOP_FLAGS_KILL), GC_ERR_SUCCESS);
}

TEST_F(Streams, AStartThatTheFrameGrabberRefusesLeavesTheBuffers) {
    Prepare(2, "FailStart=no light");
    QueueAll();
    EXPECT_EQ(TL().DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE), GC_ERR_IO);
    std::string text;
    LastError(&text);
    EXPECT_NE(text.find("no light"), std::string::npos) << text;
    EXPECT_EQ(Queued(), 2u);
    EXPECT_FALSE(IsGrabbing());
    EXPECT_EQ(Flush(ACQ_QUEUE_ALL_DISCARD), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().DSRevokeBuffer(stream, buffers[0], nullptr, nullptr), GC_ERR_SUCCESS);
}

TEST_F(Streams, AFrameThatDoesNotFitIsCut) {
    Prepare(0);
    BUFFER_HANDLE small = nullptr;
    ASSERT_EQ(TL().DSAllocAndAnnounceBuffer(stream, 1000, nullptr, &small), GC_ERR_SUCCESS);
    buffers.push_back(small);
    Register();
    QueueAll();
    Start();
    ASSERT_EQ(Next(), small);
    EXPECT_TRUE(BufferFlag(small, BUFFER_INFO_IS_INCOMPLETE));
    EXPECT_TRUE(BufferFlag(small, BUFFER_INFO_DATA_LARGER_THAN_BUFFER));
    EXPECT_EQ(BufferSize(small, BUFFER_INFO_SIZE_FILLED), 1000u);
    EXPECT_EQ(BufferSize(small, BUFFER_INFO_DATA_SIZE), 2048u * 2048u);
    Stop();
}

TEST_F(Streams, FlushingMovesTheInputPoolToTheOutputQueue) {
    Prepare(3);
    Register();
    QueueAll();
    EXPECT_EQ(Flush(ACQ_QUEUE_INPUT_TO_OUTPUT), GC_ERR_SUCCESS);
    EXPECT_EQ(Queued(), 0u);
    EXPECT_EQ(Waiting(), 3u);
    const BUFFER_HANDLE first = Next();
    EXPECT_EQ(first, buffers[0]);
    EXPECT_FALSE(BufferFlag(first, BUFFER_INFO_NEW_DATA));
    EXPECT_FALSE(BufferFlag(first, BUFFER_INFO_IS_QUEUED));
    EXPECT_EQ(Flush(ACQ_QUEUE_OUTPUT_DISCARD), GC_ERR_SUCCESS);
    EXPECT_EQ(Waiting(), 0u);
    EXPECT_EQ(Flush(ACQ_QUEUE_UNQUEUED_TO_INPUT), GC_ERR_SUCCESS);
    EXPECT_EQ(Queued(), 3u);
    EXPECT_EQ(Flush(5), GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(Streams, FlushingARunningAcquisitionLosesNoBuffer) {
    Prepare(4);
    Register();
    QueueAll();
    Start();
    ASSERT_TRUE(WaitFor(1));
    EXPECT_EQ(Flush(ACQ_QUEUE_ALL_DISCARD), GC_ERR_SUCCESS);
    EXPECT_EQ(Queued() + Waiting(), 0u);
    EXPECT_TRUE(IsGrabbing());
    EXPECT_EQ(Flush(ACQ_QUEUE_ALL_TO_INPUT), GC_ERR_SUCCESS);
    EXPECT_NE(Next(), nullptr);
    EXPECT_EQ(Flush(ACQ_QUEUE_INPUT_TO_OUTPUT), GC_ERR_SUCCESS);
    EXPECT_EQ(Queued(), 0u);
    EXPECT_EQ(Waiting(), 3u);
    Stop();
}

TEST_F(Streams, FramesThatCameBeforeTheStopAreStillThere) {
    Prepare(3);
    Register();
    QueueAll();
    Start();
    ASSERT_TRUE(WaitFor(3));
    Stop();
    for (int frame = 0; frame < 3; ++frame)
        EXPECT_NE(Next(0), nullptr);
    EXPECT_EQ(Next(0), nullptr);
}

TEST_F(Streams, StopsKeepTheInputPool) {
    Prepare(3, "Frames=1");
    Register();
    QueueAll();
    Start();
    EXPECT_EQ(Next(), buffers[0]);
    Stop();
    EXPECT_EQ(Queued(), 2u);
    Start();
    EXPECT_EQ(Next(), buffers[1]);
    Stop();
}

TEST_F(Streams, PartsChunksAndFlowsHaveNoData) {
    Prepare(1);
    std::uint32_t parts = 0;
    std::size_t chunks = 0;
    std::size_t size = 0;
    EXPECT_EQ(TL().DSGetNumBufferParts(stream, buffers[0], &parts), GC_ERR_NO_DATA);
    EXPECT_EQ(TL().DSGetBufferPartInfo(stream, buffers[0], 0, 0, nullptr, nullptr, &size), GC_ERR_NO_DATA);
    EXPECT_EQ(TL().DSGetBufferChunkData(stream, buffers[0], nullptr, &chunks), GC_ERR_NO_DATA);
    EXPECT_EQ(TL().DSGetNumFlows(stream, &parts), GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(TL().DSGetNumBufferSegments(stream, buffers[0], &parts), GC_ERR_SUCCESS);
    EXPECT_EQ(parts, 1u);
    EXPECT_EQ(TL().DSGetBufferSegmentInfo(stream, buffers[0], 1, 0, nullptr, nullptr, &size), GC_ERR_INVALID_INDEX);
}

TEST_F(Streams, StackedInfosFailOneByOne) {
    Prepare(1);
    bool8_t isNew = 1;
    std::size_t wide = 0;
    DS_BUFFER_INFO_STACKED infos[] = {{BUFFER_INFO_NEW_DATA, 0, &isNew, sizeof isNew, 7},
                                      {BUFFER_INFO_WIDTH, 0, &wide, sizeof wide, 7},
                                      {99, 0, &wide, sizeof wide, 7}};
    EXPECT_EQ(TL().DSGetBufferInfoStacked(stream, buffers[0], infos, 3), GC_ERR_SUCCESS);
    EXPECT_EQ(infos[0].iResult, GC_ERR_SUCCESS);
    EXPECT_EQ(infos[0].iType, INFO_DATATYPE_BOOL8);
    EXPECT_EQ(isNew, 0);
    EXPECT_EQ(infos[1].iResult, GC_ERR_NOT_AVAILABLE);
    EXPECT_EQ(infos[2].iResult, GC_ERR_NOT_IMPLEMENTED);
    EXPECT_EQ(TL().DSGetBufferInfoStacked(stream, buffers[0], infos, 0), GC_ERR_INVALID_PARAMETER);
}

// Delivered frames are those of the last start, all others those since the opening.
TEST_F(Streams, CountDeliveredFramesAnewWithEachStart) {
    Prepare(4);
    Register();
    for (const std::uint64_t frames : {3, 2}) {
        EXPECT_EQ(Flush(ACQ_QUEUE_ALL_TO_INPUT), GC_ERR_SUCCESS);
        Start(frames);
        ASSERT_TRUE(WaitFor(frames));
        EXPECT_EQ(StreamCount(STREAM_INFO_NUM_DELIVERED), frames);
        Stop();
    }
    EXPECT_EQ(StreamCount(STREAM_INFO_NUM_STARTED), 5U + StreamCount(STREAM_INFO_NUM_UNDERRUN));
}

TEST_F(Streams, OpenAgainAfterTheyWereClosed) {
    Prepare(2);
    QueueAll();
    Start();
    EXPECT_EQ(TL().DSClose(stream), GC_ERR_SUCCESS);
    EXPECT_EQ(TL().DSClose(stream), GC_ERR_INVALID_HANDLE);
    buffers.clear();
    OpenStream();
    Announce(2);
    Register();
    QueueAll();
    Start();
    EXPECT_NE(Next(), nullptr);
}

TEST_F(Streams, FramesAreWholeWhileTheConsumerFlushes) {
    Prepare(6, "FrameRate=0;Frames=0");
    Register();
    QueueAll();
    Start();
    std::uint64_t received = 0;
    std::uint64_t lastId = 0;
    for (int step = 0; step < 500; ++step) {
        const BUFFER_HANDLE buffer = Next();
        ASSERT_NE(buffer, nullptr);
        if (BufferFlag(buffer, BUFFER_INFO_NEW_DATA)) {
            ++received;
            EXPECT_GT(FrameId(buffer), lastId);
            lastId = FrameId(buffer);
            const auto base = BufferValue<void*>(buffer, BUFFER_INFO_BASE, INFO_DATATYPE_PTR);
            const auto mark = grabber::ReadFrameMark({static_cast<const std::uint8_t*>(base), PayloadSize()});
            EXPECT_TRUE(mark.has_value());
        }
        EXPECT_EQ(TL().DSQueueBuffer(stream, buffer), GC_ERR_SUCCESS);
        if (step % 37 == 0) {
            EXPECT_EQ(Flush(step % 2 == 0 ? ACQ_QUEUE_ALL_TO_INPUT : ACQ_QUEUE_INPUT_TO_OUTPUT), GC_ERR_SUCCESS);
        }
    }
    Stop();
    EXPECT_LE(received, StreamCount(STREAM_INFO_NUM_DELIVERED));
}

}  // namespace

}  // namespace gentl_test
