/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Frames on their way from a plug-in into a buffer and a result
 */

#include <thread>

#include "AllocationCount.h"
#include "FrameDeliveryFixture.h"
#include "FrameMark.h"
#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;

constexpr std::uint32_t kUnreadable = 0xFFFFFFFF;

TEST_F(FrameDelivery, FillsBufferAndResult) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, &handle);
    m_device.Set("OffsetX", 3);
    m_device.Set("OffsetY", 5);
    EXPECT_FALSE(m_plugin.Deliver(Frame(0xFFFFFFFE)));
    const GrabResult result = Retrieve();
    EXPECT_EQ(BufferOf(handle), m_frameData);
    EXPECT_EQ(result.context, &handle);
    EXPECT_EQ(result.handle, handle);
    EXPECT_EQ(result.buffer, BufferOf(handle).data());
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.frameTag, 0xFFFFFFFEU);
    EXPECT_EQ(result.kind, 0);
    EXPECT_EQ(result.pixelType, PixelType_Mono8);
    EXPECT_EQ(result.reserved, 0U);
    EXPECT_EQ(result.width, 8);
    EXPECT_EQ(result.height, 4);
    EXPECT_EQ(result.offsetX, 3);
    EXPECT_EQ(result.offsetY, 5);
    EXPECT_EQ(result.reservedX, 0);
    EXPECT_EQ(result.reservedY, 0);
    EXPECT_EQ(result.payloadSize, 32U);
    EXPECT_EQ(result.errorCode, 0U);
    EXPECT_TRUE(result.errorDescription.empty());
}

TEST_F(FrameDelivery, ReadsNothingElseOfAFrame) {
    PlainFrame frame = Frame(3);
    frame.notRead1[0] = frame.notRead1[1] = frame.notRead2 = ~std::uint64_t{0};
    const GrabResult result = Grab(frame);
    EXPECT_EQ(result.status, Grabbed);
    EXPECT_EQ(result.payloadSize, 32U);
    EXPECT_EQ(result.frameTag, 3U);
    EXPECT_EQ(BufferOf(result.handle), m_frameData);
}

TEST_F(FrameDelivery, GoesInTheOrderOfTheQueue) {
    const StreamBufferHandle first = AddBuffer();
    const StreamBufferHandle second = AddBuffer();
    m_grabber->QueueBuffer(second, nullptr);
    m_grabber->QueueBuffer(first, nullptr);
    m_plugin.Deliver(Frame(1));
    m_plugin.Deliver(Frame(2));
    EXPECT_EQ(Retrieve().handle, second);
    EXPECT_EQ(Retrieve().handle, first);
}

TEST_F(FrameDelivery, FramesWithoutABufferAreDropped) {
    EXPECT_FALSE(m_plugin.Deliver(Frame()));
    EXPECT_EQ(m_log->CountText("Buffer underrun*!", tracelog::kTrace), 1U);
    EXPECT_FALSE(IsSignalled());
}

TEST_F(FrameDelivery, SignalsAFailedFrameToo) {
    PlainFrame frame = Frame();
    frame.data = nullptr;
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_plugin.Deliver(frame);
    EXPECT_TRUE(IsSignalled());
}

TEST_F(FrameDelivery, CutsAFrameThatIsTooLarge) {
    const GrabResult result = Grab(Frame(), 20);
    EXPECT_EQ(result.payloadSize, 20U);
    EXPECT_EQ(result.height, 4);
    EXPECT_EQ(BufferOf(result.handle), std::vector<std::uint8_t>(m_frameData.begin(), m_frameData.begin() + 20));
}

TEST_F(FrameDelivery, ABufferWithoutSizeStaysUntouched) {
    std::uint8_t byte = 0xEE;
    m_grabber->QueueBuffer(m_grabber->RegisterBuffer(&byte, 0), nullptr);
    m_plugin.Deliver(Frame());
    const GrabResult result = Retrieve();
    EXPECT_EQ(result.status, Grabbed);
    EXPECT_EQ(result.payloadSize, 0U);
    EXPECT_EQ(byte, 0xEE);
}

TEST_F(FrameDelivery, AWidthIsPassedOnBitByBit) {
    PlainFrame frame = Frame();
    frame.width = 0x80000001;
    EXPECT_EQ(Grab(frame).width, -0x7FFFFFFF);
}

TEST_F(FrameDelivery, EndsAPitchedFrameWithinItsLastLine) {
    PlainFrame frame = Frame();
    frame.linePitch = 8;
    frame.lineLength = 6;
    frame.dataSize = 20;
    const GrabResult result = Grab(frame);
    EXPECT_EQ(result.payloadSize, 20U);
    EXPECT_EQ(BufferOf(result.handle)[19], 25);
    EXPECT_EQ(BufferOf(result.handle)[20], 0xEE);
}

TEST_F(FrameDelivery, AFailureKeepsNothingOfTheFrameBefore) {
    const StreamBufferHandle handle = Grab(Frame(7)).handle;
    m_device.Set("OffsetY", 0x80000000);
    m_grabber->QueueBuffer(handle, &handle);
    m_plugin.Deliver(Frame(8));
    const GrabResult result = Retrieve();
    EXPECT_EQ(result.status, GrabFailed);
    EXPECT_EQ(result.context, &handle);
    EXPECT_EQ(result.buffer, BufferOf(handle).data());
    EXPECT_EQ(result.frameTag, 0U);
    EXPECT_EQ(result.kind, -1);
    EXPECT_EQ(result.height, -1);
    EXPECT_EQ(result.reservedX, -1);
    EXPECT_EQ(result.reservedY, -1);
    EXPECT_EQ(result.payloadSize, ~std::uint64_t{0});
}

TEST_F(FrameDelivery, LeavesGapsBetweenLinesOut) {
    PlainFrame frame = Frame();
    frame.linePitch = 8;
    frame.lineLength = 6;
    frame.dataSize = 24;
    const GrabResult result = Grab(frame, 24);
    EXPECT_EQ(result.payloadSize, 24U);
    const std::vector<std::uint8_t> expected{0,  1,  2,  3,  4,  5,  8,  9,  10, 11, 12, 13,
                                             16, 17, 18, 19, 20, 21, 24, 25, 26, 27, 28, 29};
    EXPECT_EQ(BufferOf(result.handle), expected);
}

TEST_F(FrameDelivery, ThePayloadIsWhatTheCopyIsBoundedBy) {
    PlainFrame frame = Frame();
    frame.lineLength = 6;
    frame.dataSize = 100;  // more than there are lines
    const GrabResult result = Grab(frame, 40);
    EXPECT_EQ(result.payloadSize, 40U);
    EXPECT_EQ(BufferOf(result.handle)[23], 29);
    EXPECT_EQ(BufferOf(result.handle)[24], 0xEE);
}

TEST_F(FrameDelivery, ANegativeLineCountIsPassedOnWithoutLines) {
    PlainFrame frame = Frame();
    frame.lineLength = 6;
    frame.lineCount = -4;
    const GrabResult result = Grab(frame);
    EXPECT_EQ(result.status, Grabbed);
    EXPECT_EQ(result.height, -4);
    EXPECT_EQ(BufferOf(result.handle), std::vector<std::uint8_t>(32, 0xEE));
}

TEST_F(FrameDelivery, AFrameWithoutDataFails) {
    PlainFrame frame = Frame(9);
    frame.data = nullptr;
    const GrabResult result = Grab(frame);
    EXPECT_EQ(result.status, GrabFailed);
    EXPECT_EQ(result.errorCode, kUnreadable);
    EXPECT_EQ(result.errorDescription, "The frame grabber plug-in delivered a frame without data.");
    EXPECT_EQ(result.payloadSize, ~std::uint64_t{0});
}

TEST_F(FrameDelivery, AnEmptyFrameNeedsNoData) {
    PlainFrame frame{};
    EXPECT_EQ(Grab(frame).payloadSize, 0U);
}

TEST_F(FrameDelivery, ANullDescriptorIsRefused) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    EXPECT_FALSE(m_plugin->callee->table->frameDelivered(m_plugin->callee, nullptr));
    EXPECT_EQ(m_log->CountText("Invalid frame descriptor passed.", tracelog::kError), 1U);
    m_plugin.Deliver(Frame(1));
    EXPECT_EQ(Retrieve().handle, handle);
}

TEST_F(FrameDelivery, AnErrorIsForgottenWithTheNextFrame) {
    PlainFrame bad = Frame();
    bad.data = nullptr;
    const StreamBufferHandle handle = Grab(bad).handle;
    m_grabber->QueueBuffer(handle, nullptr);
    m_plugin.Deliver(Frame());
    const GrabResult result = Retrieve();
    EXPECT_EQ(result.status, Grabbed);
    EXPECT_EQ(result.errorCode, 0U);
    EXPECT_TRUE(result.errorDescription.empty());
}

TEST_F(FrameDelivery, DoesNotAllocate) {
    constexpr int kBuffers = 100;
    std::vector<StreamBufferHandle> handles;
    for (int count = 0; count < kBuffers; ++count)
        handles.push_back(AddBuffer());
    const PlainFrame frame = Frame();
    std::size_t allocations = 0;
    m_log.reset();
    for (int round = 0; round < 10; ++round) {
        for (const StreamBufferHandle handle : handles)
            m_grabber->QueueBuffer(handle, nullptr);
        const std::size_t before = AllocationsOfThisThread();
        for (int count = 0; count < kBuffers; ++count)
            m_plugin.Deliver(frame);
        allocations += round == 0 ? 0 : AllocationsOfThisThread() - before;  // the first fills the nodes' caches
        for (int count = 0; count < kBuffers; ++count)
            Retrieve();
    }
    EXPECT_EQ(allocations, 0U);
}

TEST_F(FrameDelivery, FindsRoomForItsResult) {
    Grab(Frame());  // fills the nodes' caches
    constexpr int kBuffers = 100;
    for (int count = 0; count < kBuffers; ++count)
        m_grabber->QueueBuffer(AddBuffer(), nullptr);
    const PlainFrame frame = Frame();
    m_log.reset();
    const std::size_t before = AllocationsOfThisThread();
    for (int count = 0; count < kBuffers; ++count)
        m_plugin.Deliver(frame);
    EXPECT_EQ(AllocationsOfThisThread(), before);
}

// Neither the heap nor a thread's stack could hold the frame on its way: the only copy is the one into the buffer.
TEST_F(FrameDelivery, NeedsNoMemoryForAFrame) {
    constexpr std::size_t kSize = std::size_t{64} << 20;
    for (const std::uint64_t gap : {0U, 64U}) {
        constexpr std::uint64_t kWidth = 8192;
        const std::vector<std::uint8_t> data((kWidth + gap) * (kSize / kWidth), std::uint8_t{0x5A});
        PlainFrame frame = Frame();
        frame.width = kWidth;
        frame.lineCount = static_cast<std::int32_t>(kSize / kWidth);
        frame.lineLength = kWidth;
        frame.linePitch = kWidth + gap;
        frame.dataSize = kSize;
        frame.data = data.data();
        Grab(Frame());  // fills the nodes' caches
        const StreamBufferHandle handle = AddBuffer(kSize);
        m_grabber->QueueBuffer(handle, nullptr);
        const std::size_t before = AllocationsOfThisThread();
        m_plugin.Deliver(frame);
        EXPECT_EQ(AllocationsOfThisThread(), before);
        EXPECT_EQ(Retrieve().payloadSize, kSize);
        EXPECT_EQ(BufferOf(handle), std::vector<std::uint8_t>(kSize, std::uint8_t{0x5A}));
    }
}

TEST_F(FrameDelivery, ComesFromSeveralThreadsAtOnce) {
    constexpr int kFrames = 2000;
    const StreamBufferHandle handles[] = {AddBuffer(4096), AddBuffer(4096), AddBuffer(4096)};
    // Twice each: two threads will want to fill the same buffer.
    for (const StreamBufferHandle handle : handles) {
        m_grabber->QueueBuffer(handle, nullptr);
        m_grabber->QueueBuffer(handle, nullptr);
    }
    std::atomic<bool> stop{false};
    const auto deliver = [&](std::uint8_t value) {
        std::vector<std::uint8_t> data(4096, value);
        grabber::WriteFrameMark(data, value);
        PlainFrame frame{};
        frame.width = 64;
        frame.lineCount = 64;
        frame.lineLength = frame.linePitch = 64;
        frame.dataSize = data.size();
        frame.data = data.data();
        while (!stop)
            m_plugin.Deliver(frame);
    };
    std::thread first([&] { deliver(1); });
    std::thread second([&] { deliver(2); });
    int grabbed = 0;
    while (grabbed < kFrames && m_grabber->GetWaitObject().Wait(20000)) {
        GrabResult result;
        while (m_grabber->RetrieveResult(result)) {
            EXPECT_EQ(result.payloadSize, 4096U);
            ++grabbed;
            m_grabber->QueueBuffer(result.handle, nullptr);
        }
    }
    stop = true;
    first.join();
    second.join();
    EXPECT_GE(grabbed, kFrames);
    for (const StreamBufferHandle handle : handles)
        EXPECT_TRUE(grabber::ReadFrameMark(BufferOf(handle)));
}

TEST_F(FrameDelivery, MayComeAfterStop) {
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->FinishGrab();
    EXPECT_FALSE(m_plugin.Deliver(Frame()));
    EXPECT_EQ(m_log->CountText("Buffer underrun*!", tracelog::kTrace), 1U);
    EXPECT_EQ(Retrieve().status, Canceled);
}

TEST_F(FrameDelivery, IsSentBackWhileThePluginShutsDown) {
    // Shutdown waits for a thread that delivers, as that of a plug-in does which was not stopped before.
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_plugin->hookContext = this;
    m_plugin->onShutdown = [](void* self) {
        auto& test = *static_cast<FrameDelivery*>(self);
        std::thread([&test] { EXPECT_FALSE(test.m_plugin.Deliver(test.Frame())); }).join();
    };
    m_grabber.reset();
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab Shutdown Destroy ");
}

}  // namespace
