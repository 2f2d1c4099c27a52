/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Frames on their way from a plug-in into a buffer and a result
 */

#include <future>
#include <thread>

#include "AllocationCount.h"
#include "FrameMark.h"
#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;

constexpr std::uint32_t kUnreadable = 0xFFFFFFFF;

class FrameDelivery : public StreamTest {
protected:
    explicit FrameDelivery(const CameraXml& camera = CameraXml()) : StreamTest(camera) { m_grabber->PrepareGrab(); }

    /// Delivers a frame into a new buffer.
    GrabResult Grab(const PlainFrame& frame, std::size_t bufferSize = 32) {
        m_grabber->QueueBuffer(AddBuffer(bufferSize), nullptr);
        EXPECT_FALSE(m_plugin.Deliver(frame));
        return Retrieve();
    }
};

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

TEST_F(FrameDelivery, AnUnknownPixelFormatFailsTheFrame) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->FinishGrab();
    m_device.Set("PixelFormat", 99);
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(handle, nullptr);
    m_plugin.Deliver(Frame(7));
    const GrabResult result = Retrieve();
    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.errorCode, kUnreadable);
    EXPECT_EQ(result.errorDescription, "Failed to retrieve result specific data from device nodemap.");
    EXPECT_EQ(result.frameTag, 0U);
    EXPECT_EQ(result.kind, -1);
    EXPECT_EQ(result.width, -1);
    EXPECT_EQ(result.payloadSize, ~std::uint64_t{0});
    EXPECT_EQ(BufferOf(handle), std::vector<std::uint8_t>(32, 0xEE));
}

class FrameDeliveryOfFormatlessCamera : public FrameDelivery {
protected:
    FrameDeliveryOfFormatlessCamera() : FrameDelivery(CameraXml().Without("PixelFormat")) {}
};

TEST_F(FrameDeliveryOfFormatlessCamera, FailsWithoutAWord) {
    m_log->Clear();
    EXPECT_EQ(Grab(Frame()).status, GrabFailed);
    EXPECT_EQ(CountLevel(*m_log, tracelog::kError), 0U);
}

class FrameDeliveryOfNumberedFormat : public FrameDelivery {
protected:
    FrameDeliveryOfNumberedFormat()
        : FrameDelivery(CameraXml().With("PixelFormat", CameraXml::Integer("PixelFormat", 0x01080001))) {}
};

TEST_F(FrameDeliveryOfNumberedFormat, Fails) {
    EXPECT_EQ(Grab(Frame()).status, GrabFailed);
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

TEST_F(FrameDelivery, NegativeOffsetsAreRaisedToZero) {
    m_device.Set("OffsetX", -3);
    const GrabResult result = Grab(Frame());
    EXPECT_EQ(result.offsetX, 0);
}

TEST_F(FrameDelivery, OffsetsOutOfRangeFailTheFrame) {
    m_device.Set("OffsetY", 0x80000000);
    const GrabResult result = Grab(Frame());
    EXPECT_EQ(result.status, GrabFailed);
    EXPECT_EQ(result.offsetX, 0);
    EXPECT_EQ(result.offsetY, -1);
    bool isLogged = false;
    for (const tracelog::LogMessage& message : m_log->GetMessages()) {
        isLogged |= message.level == tracelog::kError &&
                    message.text.starts_with("Could not read values from device nodemap (") &&
                    message.text.find("Value 2147483648 out of range (-2147483648..2147483647)") != std::string::npos;
    }
    EXPECT_TRUE(isLogged);
}

// Another thread writes features over a slow line, one after the other: it has the camera's node map locked all the
// time but for moments.
TEST_F(FrameDelivery, DoesNotNeedANodeMapThatIsLocked) {
    std::future<void> delivery;
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    const GenApi::AutoLock lock(m_device->GetNodeMap()->GetLock());
    for (const std::int32_t offset : {0, 4}) {
        m_device.Set("OffsetX", offset);
        delivery = std::async(std::launch::async, [this] { m_plugin.Deliver(Frame()); });
        ASSERT_EQ(delivery.wait_for(std::chrono::seconds(20)), std::future_status::ready);
        EXPECT_EQ(Retrieve().offsetX, offset);
    }
}

TEST_F(FrameDelivery, AsksTheNodeMapOnceTheDeviceIsClosed) {
    std::future<void> delivery;
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_device.Close();
    {
        const GenApi::AutoLock lock(m_device->GetNodeMap()->GetLock());
        delivery = std::async(std::launch::async, [this] { m_plugin.Deliver(Frame()); });
        EXPECT_EQ(delivery.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    }
    delivery.get();
    EXPECT_EQ(Retrieve().status, Grabbed);
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

class FrameDeliveryOfPoorCamera : public FrameDelivery {
protected:
    FrameDeliveryOfPoorCamera() : FrameDelivery(CameraXml().Without("OffsetY")) {}
};

TEST_F(FrameDeliveryOfPoorCamera, NeedsNoOffsetY) {
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->CancelGrab();
    EXPECT_EQ(Retrieve().offsetY, -1);
    EXPECT_EQ(Grab(Frame()).offsetY, 0);
}

/// A camera whose OffsetX is read from it for every frame, so that a delivery can be held up there.
class FrameDeliveryOfRegisterCamera : public FrameDelivery {
protected:
    FrameDeliveryOfRegisterCamera()
        : FrameDelivery(CameraXml().With("OffsetX", CameraXml::Register("OffsetX", 0x100))) {}

    /// Delivers a frame on another thread and returns when that has taken its buffer.
    std::thread DeliverHeldUp() {
        m_device.Memory().onRead = [this] {
            m_inside.set_value();
            m_mayGoOn.get_future().wait();
        };
        std::thread delivery([this] { m_plugin.Deliver(Frame(1)); });
        m_inside.get_future().wait();
        m_device.Memory().onRead = nullptr;
        return delivery;
    }
    void LetGoOn() { m_mayGoOn.set_value(); }

private:
    std::promise<void> m_inside;
    std::promise<void> m_mayGoOn;
};

TEST_F(FrameDeliveryOfRegisterCamera, FailsWithTheCable) {
    EXPECT_EQ(Grab(Frame()).status, Grabbed);
    m_device.Memory().isGone = true;
    EXPECT_EQ(Grab(Frame()).status, GrabFailed);
    m_device.Memory().isGone = false;
    EXPECT_EQ(Grab(Frame()).status, Grabbed);
}

TEST_F(FrameDeliveryOfRegisterCamera, HoldsNobodyUp) {
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    std::thread delivery = DeliverHeldUp();
    GrabResult result;
    EXPECT_FALSE(m_grabber->RetrieveResult(result));
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    EXPECT_TRUE(m_grabber->IsOpen());
    LetGoOn();
    delivery.join();
    EXPECT_EQ(Retrieve().status, Grabbed);
}

TEST_F(FrameDeliveryOfRegisterCamera, GoesOnWhenTheGrabIsCancelled) {
    const StreamBufferHandle first = AddBuffer();
    const StreamBufferHandle second = AddBuffer();
    m_grabber->QueueBuffer(first, nullptr);
    m_grabber->QueueBuffer(second, nullptr);
    std::thread delivery = DeliverHeldUp();
    m_grabber->CancelGrab();
    LetGoOn();
    delivery.join();
    const GrabResult cancelled = Retrieve();
    EXPECT_EQ(cancelled.handle, second);
    EXPECT_EQ(cancelled.status, Canceled);
    const GrabResult grabbed = Retrieve();
    EXPECT_EQ(grabbed.handle, first);
    EXPECT_EQ(grabbed.status, Grabbed);
}

TEST_F(FrameDeliveryOfRegisterCamera, EndsBeforeAClose) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    std::thread delivery = DeliverHeldUp();
    auto close = std::async(std::launch::async, [&] { m_grabber->Close(); });
    ASSERT_TRUE(m_log->WaitForText("Closing StreamGrabber", std::chrono::seconds(20)));
    EXPECT_EQ(close.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    LetGoOn();
    close.wait();
    const std::vector<std::uint8_t> buffer = BufferOf(handle);
    delivery.join();
    EXPECT_EQ(BufferOf(handle), buffer);
}

TEST_F(FrameDeliveryOfRegisterCamera, IsNotWaitedForByACloseForEver) {
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    std::thread delivery = DeliverHeldUp();
    m_grabber->Close();
    EXPECT_EQ(m_log->CountText("A frame is still being delivered 5 s after the closing of the stream grabber. Do not "
                               "free its buffer yet.",
                               tracelog::kWarning),
              1U);
    LetGoOn();
    delivery.join();
}

TEST_F(FrameDeliveryOfRegisterCamera, IsARemainderAfterAClose) {
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    std::thread delivery = DeliverHeldUp();
    auto close = std::async(std::launch::async, [&] { m_grabber->Close(); });
    while (m_grabber->IsOpen())
        std::this_thread::yield();
    LetGoOn();
    close.wait();
    delivery.join();
    m_grabber->Open();
    GrabResult result;
    EXPECT_THAT(MessageOf<GenICam::RuntimeException>([&] { m_grabber->RetrieveResult(result); }),
                testing::AllOf(testing::StartsWith("Buffer with handle 0x"), testing::EndsWith(" not found")));
}

TEST_F(FrameDeliveryOfRegisterCamera, OutlivesTheRecordOfItsBuffer) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    std::thread delivery = DeliverHeldUp();
    EXPECT_EQ(m_grabber->DeregisterBuffer(handle), BufferOf(handle).data());
    m_buffers.erase(handle);  // the memory is gone before the copy would begin
    LetGoOn();
    delivery.join();
    GrabResult result;
    EXPECT_THROW(m_grabber->RetrieveResult(result), GenICam::RuntimeException);
}

TEST_F(FrameDeliveryOfRegisterCamera, LeavesADeregisteredBufferAsItIs) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    std::thread delivery = DeliverHeldUp();
    m_grabber->DeregisterBuffer(handle);
    LetGoOn();
    delivery.join();
    EXPECT_EQ(BufferOf(handle), std::vector<std::uint8_t>(32, 0xEE));
}

// A plug-in should not deliver within an operation or a watching function; one that does may not hang.
TEST_F(FrameDeliveryOfRegisterCamera, MayComeWithinAnotherIntoTheSameBuffer) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    m_grabber->QueueBuffer(handle, nullptr);
    m_device.Memory().onRead = [&] {
        m_device.Memory().onRead = nullptr;
        m_plugin.Deliver(Frame(2));
    };
    m_plugin.Deliver(Frame(1));
    EXPECT_EQ(Retrieve().handle, handle);
    EXPECT_EQ(Retrieve().frameTag, 1U);  // the one that ended last
}

// Who learns from a node of the camera that the camera is gone has the lock of its node map, for which the frame waits.
TEST_F(FrameDeliveryOfRegisterCamera, GivesWayToAStopWithTheCamerasLockHeld) {
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    std::thread delivery;
    m_plugin->hookContext = &delivery;
    m_plugin->onStop = [](void* thread) { static_cast<std::thread*>(thread)->join(); };
    m_device.Memory().onRead = [&] {
        m_device.Memory().onRead = nullptr;
        delivery = std::thread([this] { m_plugin.Deliver(Frame(1)); });
        m_grabber->CancelGrab();
    };
    m_device.Value("OffsetX");
    const GrabResult result = Retrieve();
    EXPECT_EQ(result.status, GrabFailed);
    EXPECT_EQ(result.errorDescription, "Failed to retrieve result specific data from device nodemap.");
}

// As above, on a thread that delivers itself, while another one wants to fill the same buffer.
TEST_F(FrameDeliveryOfRegisterCamera, GivesWayToAStopWithinADeliveryIntoTheSameBuffer) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    m_grabber->QueueBuffer(handle, nullptr);
    std::thread delivery;
    m_plugin->hookContext = &delivery;
    m_plugin->onStop = [](void* thread) { static_cast<std::thread*>(thread)->join(); };
    m_device.Memory().onRead = [&] {
        m_device.Memory().onRead = nullptr;
        delivery = std::thread([this] { m_plugin.Deliver(Frame(2)); });
        m_grabber->CancelGrab();
    };
    m_plugin.Deliver(Frame(1));
    EXPECT_EQ(Retrieve().handle, handle);
    EXPECT_EQ(Retrieve().frameTag, 1U);
}

TEST_F(FrameDeliveryOfRegisterCamera, GivesWayToACloseWithTheCamerasLockHeld) {
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    std::future<void> delivery;
    m_device.Memory().onRead = [&] {
        m_device.Memory().onRead = nullptr;
        delivery = std::async(std::launch::async, [this] { m_plugin.Deliver(Frame()); });
        EXPECT_EQ(delivery.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
        m_grabber->Close();
        EXPECT_EQ(delivery.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    };
    m_device.Value("OffsetX");
}

TEST_F(FrameDeliveryOfRegisterCamera, GivesWayToTheEndWithTheCamerasLockHeld) {
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    std::future<void> delivery;
    m_device.Memory().onRead = [&] {
        m_device.Memory().onRead = nullptr;
        delivery = std::async(std::launch::async, [this] { m_plugin.Deliver(Frame()); });
        EXPECT_EQ(delivery.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
        m_grabber.reset();
    };
    m_device.Value("OffsetX");
    EXPECT_EQ(delivery.wait_for(std::chrono::seconds(20)), std::future_status::ready);
}

TEST_F(FrameDeliveryOfRegisterCamera, DoesNotTouchABufferThatWasGivenBackMeanwhile) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    // What an application may do that is told, on this thread, that its camera is gone.
    m_device.Memory().onRead = [&] {
        m_grabber->Close();
        m_buffers.erase(handle);
    };
    m_plugin.Deliver(Frame());
    EXPECT_FALSE(m_grabber->IsOpen());
}

}  // namespace
