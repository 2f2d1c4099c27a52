/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a delivered frame is: its pixel format and its place in the camera
 */

#include <future>

#include "FrameDeliveryFixture.h"
#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;

constexpr std::uint32_t kUnreadable = 0xFFFFFFFF;

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

}  // namespace
