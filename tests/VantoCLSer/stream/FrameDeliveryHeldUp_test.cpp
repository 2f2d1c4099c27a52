/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Deliveries that are held up, while others stop, close or end
 */

#include <future>
#include <thread>

#include "FrameDeliveryFixture.h"
#include "FrameMark.h"
#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;

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

    /// The next read from the camera cancels the grab, while a frame is delivered on another thread, for whose end the
    /// plug-in's stop waits.
    void CancelInTheNextRead(std::thread& delivery, std::uint32_t tag) {
        m_plugin->hookContext = &delivery;
        m_plugin->onStop = [](void* thread) { static_cast<std::thread*>(thread)->join(); };
        m_device.Memory().onRead = [this, &delivery, tag] {
            m_device.Memory().onRead = nullptr;
            delivery = std::thread([this, tag] { m_plugin.Deliver(Frame(tag)); });
            m_grabber->CancelGrab();
        };
    }

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
    CancelInTheNextRead(delivery, 1);
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
    CancelInTheNextRead(delivery, 2);
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
