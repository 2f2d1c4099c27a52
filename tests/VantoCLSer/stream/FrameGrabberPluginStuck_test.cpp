/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What still works while a plug-in does not return from stopping
 */

#include <future>

#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;

constexpr std::chrono::seconds kLong(30);

/// Another thread finishes the grab and hangs in the plug-in until the test lets it go on.
class StuckPlugin : public StreamTest {
protected:
    StuckPlugin() {
        m_grabber->PrepareGrab();
        m_grabber->QueueBuffer(AddBuffer(), nullptr);
        m_plugin->hookContext = this;
        m_plugin->onStop = [](void* self) { static_cast<StuckPlugin*>(self)->Hang(); };
        m_finish = std::async(std::launch::async, [this] { m_grabber->FinishGrab(); });
        m_isStuck.get_future().wait();
    }
    ~StuckPlugin() override { LetGoOn(); }

    void LetGoOn() {
        if (!m_finish.valid())
            return;
        m_mayGoOn.set_value();
        m_finish.get();
    }

private:
    void Hang() {
        if (std::exchange(m_hasHung, true))
            return;
        m_isStuck.set_value();
        m_mayGoOn.get_future().wait();
    }

    bool m_hasHung = false;
    std::promise<void> m_isStuck;
    std::promise<void> m_mayGoOn;
    std::future<void> m_finish;
};

TEST_F(StuckPlugin, LeavesBuffersUsable) {
    EXPECT_FALSE(m_plugin.Deliver(Frame(7)));
    EXPECT_EQ(Retrieve().frameTag, 7U);
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab StopGrab ");  // not started meanwhile
    const StreamBufferHandle other = AddBuffer();
    EXPECT_EQ(m_grabber->DeregisterBuffer(other), BufferOf(other).data());
    LetGoOn();
    const GrabResult result = Retrieve();
    EXPECT_EQ(result.handle, handle);
    EXPECT_EQ(result.status, Canceled);
}

TEST_F(StuckPlugin, LeavesNodesUsable) {
    auto nodes = std::async(std::launch::async, [this] {
        m_device.Set("OffsetX", 4);
        GenApi::CIntegerPtr(m_grabber->GetNodeMap()->GetNode("Width"))->SetValue(16);
        m_plugin->value = 40;
        return GenApi::CIntegerPtr(m_grabber->GetNodeMap()->GetNode("PixelClockDetected"))->GetValue();
    });
    ASSERT_EQ(nodes.wait_for(kLong), std::future_status::ready);
    EXPECT_EQ(nodes.get(), 40);
}

TEST_F(StuckPlugin, DoesNotKeepTheGrabberOpen) {
    auto close = std::async(std::launch::async, [this] { m_grabber->Close(); });
    ASSERT_EQ(close.wait_for(kLong), std::future_status::ready);
    EXPECT_FALSE(m_grabber->IsOpen());
    EXPECT_FALSE(m_plugin.Deliver(Frame()));
    EXPECT_THROW(m_grabber->QueueBuffer(1, nullptr), GenICam::LogicalErrorException);
}

TEST_F(StuckPlugin, HoldsNobodyElseWhoCancels) {
    auto cancel = std::async(std::launch::async, [this] { m_grabber->CancelGrab(); });
    ASSERT_EQ(cancel.wait_for(kLong), std::future_status::ready);
    EXPECT_EQ(Retrieve().status, Canceled);
}

}  // namespace
