/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The simulated grabber, driven as a stream grabber does
 */

#include "SimulatedGrabber.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "FrameMark.h"

namespace {

using namespace std::chrono_literals;
using grabber::SimulatedGrabber;

constexpr auto kPatience = 20s;

/// A camera's nodes as numbers, and a collector of frames.
class Host final : public Vanto::FgCallee {
public:
    bool FrameDelivered(const Vanto::FgFrame* frame) noexcept override {
        if (onFrame)
            onFrame();
        const std::lock_guard lock(m_lock);
        m_tags.push_back(frame->frameTag);
        const auto* data = static_cast<const std::uint8_t*>(frame->data);
        m_marks.push_back(grabber::ReadFrameMark({data, frame->dataSize}));
        m_changed.notify_all();
        return false;
    }
    Vanto::FgNodeCallbackHandle RegisterDeviceNodeCallback(const char* name, Vanto::FgNodeCallback function,
                                                           void* context, std::uint32_t kind) noexcept override {
        if (!device.contains(name))
            return 0;
        function(device[name], context, kind);
        m_watched[name] = [=](std::int64_t value) { function(value, context, kind); };
        m_kinds.push_back(kind);
        return m_watched.size();
    }
    bool DeregisterNodeCallback(Vanto::FgNodeCallbackHandle) noexcept override {
        ++deregistered;
        return true;
    }
    Vanto::FgNodeCallbackHandle RegisterStreamNodeCallback(const char* name, Vanto::FgNodeCallback function,
                                                           void* context, std::uint32_t kind) noexcept override {
        m_watched[name] = [=](std::int64_t value) { function(value, context, kind); };
        m_kinds.push_back(kind);
        return m_watched.size();
    }

    void Set(const std::string& name, std::int64_t value) { m_watched.at(name)(value); }
    std::vector<std::uint32_t> Kinds() const { return m_kinds; }
    bool WaitForFrames(std::size_t count) {
        std::unique_lock lock(m_lock);
        return m_changed.wait_for(lock, kPatience, [&] { return m_tags.size() >= count; });
    }
    std::vector<std::uint32_t> Tags() {
        const std::lock_guard lock(m_lock);
        return m_tags;
    }
    std::vector<std::optional<std::uint64_t>> Marks() {
        const std::lock_guard lock(m_lock);
        return m_marks;
    }

    std::map<std::string, std::int64_t> device{
        {"Width", 64}, {"Height", 16}, {"PixelFormat", 0x01080001}, {"PixelSize", 8}};
    std::function<void()> onFrame;
    int deregistered = 0;

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    std::vector<std::uint32_t> m_tags;
    std::vector<std::optional<std::uint64_t>> m_marks;
    std::map<std::string, std::function<void(std::int64_t)>> m_watched;
    std::vector<std::uint32_t> m_kinds;
};

std::string ErrorOf(SimulatedGrabber& grabber) {
    std::string text(grabber.GetLastErrorText(nullptr, 0), '\0');
    grabber.GetLastErrorText(text.data(), static_cast<std::uint32_t>(text.size()));
    return text;
}

class SimulatedGrabberTest : public testing::Test {
protected:
    ~SimulatedGrabberTest() override { m_grabber.Shutdown(); }
    bool Init(const char* parameters) { return m_grabber.Init(parameters, &m_host); }

    Host m_host;
    SimulatedGrabber m_grabber;
};

TEST_F(SimulatedGrabberTest, DeliversNumberedFrames) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0;FirstTag=4294967294;Frames=4"));
    ASSERT_TRUE(m_grabber.StartGrab());
    ASSERT_TRUE(m_host.WaitForFrames(4));
    EXPECT_TRUE(m_grabber.StopGrab());
    EXPECT_EQ(m_host.Tags(), (std::vector<std::uint32_t>{4294967294, 4294967295, 0, 1}));
    EXPECT_EQ(m_host.Marks(), (std::vector<std::optional<std::uint64_t>>{0, 1, 2, 3}));
}

TEST_F(SimulatedGrabberTest, DeliversOnAThreadOfItsOwn) {
    std::thread::id thread;
    m_host.onFrame = [&] { thread = std::this_thread::get_id(); };
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0;Frames=1"));
    ASSERT_TRUE(m_grabber.StartGrab());
    ASSERT_TRUE(m_host.WaitForFrames(1));
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(SimulatedGrabberTest, DropsEveryNthFrame) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0;DropEvery=3;Frames=7"));
    ASSERT_TRUE(m_grabber.StartGrab());
    ASSERT_TRUE(m_host.WaitForFrames(5));
    EXPECT_TRUE(m_grabber.StopGrab());
    EXPECT_EQ(m_host.Tags(), (std::vector<std::uint32_t>{0, 1, 3, 4, 6}));
}

TEST_F(SimulatedGrabberTest, DeliversNothingAfterStop) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0"));
    ASSERT_TRUE(m_grabber.StartGrab());
    ASSERT_TRUE(m_host.WaitForFrames(1));
    EXPECT_TRUE(m_grabber.StopGrab());
    const std::size_t count = m_host.Tags().size();
    EXPECT_TRUE(m_grabber.StopGrab());
    EXPECT_EQ(m_host.Tags().size(), count);
}

TEST_F(SimulatedGrabberTest, BeginsAgainWithNumberZero) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0;Frames=2"));
    ASSERT_TRUE(m_grabber.StartGrab());
    ASSERT_TRUE(m_host.WaitForFrames(2));
    EXPECT_TRUE(m_grabber.StopGrab());
    ASSERT_TRUE(m_grabber.StartGrab());
    ASSERT_TRUE(m_host.WaitForFrames(4));
    EXPECT_EQ(m_host.Tags(), (std::vector<std::uint32_t>{0, 1, 0, 1}));
}

TEST_F(SimulatedGrabberTest, MakesAsManyFramesAsAreTriggered) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0;Trigger=On"));
    ASSERT_TRUE(m_grabber.StartGrab());
    m_host.Set("DebugData1", 2);
    ASSERT_TRUE(m_host.WaitForFrames(2));
    m_host.Set("DebugData1", 3);
    ASSERT_TRUE(m_host.WaitForFrames(3));
    EXPECT_TRUE(m_grabber.StopGrab());
    EXPECT_EQ(m_host.Tags().size(), 3U);
}

TEST_F(SimulatedGrabberTest, StopsWhileItWaitsForTheNextFrame) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0.001"));
    ASSERT_TRUE(m_grabber.StartGrab());
    ASSERT_TRUE(m_host.WaitForFrames(1));
    EXPECT_TRUE(m_grabber.StopGrab());
    EXPECT_EQ(m_host.Tags().size(), 1U);
}

// Sometimes the thread is already asleep when it is stopped, sometimes it is about to.
TEST_F(SimulatedGrabberTest, StopsAtAnyMomentOfItsWait) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0.001"));
    for (std::size_t round = 1; round <= 100; ++round) {
        ASSERT_TRUE(m_grabber.StartGrab());
        ASSERT_TRUE(m_host.WaitForFrames(round));
        for (std::size_t turn = 0; turn < 10 * round; ++turn)
            std::this_thread::yield();
        ASSERT_TRUE(m_grabber.StopGrab());
    }
    EXPECT_EQ(m_host.Tags().size(), 100U);
}

TEST_F(SimulatedGrabberTest, MayBeStoppedInADelivery) {
    m_host.onFrame = [this] { m_grabber.StopGrab(); };
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0"));
    ASSERT_TRUE(m_grabber.StartGrab());
    ASSERT_TRUE(m_host.WaitForFrames(1));
    EXPECT_TRUE(m_grabber.StopGrab());
    EXPECT_EQ(m_host.Tags().size(), 1U);
}

TEST_F(SimulatedGrabberTest, RefusesToStartInADelivery) {
    bool started = true;
    m_host.onFrame = [&] { started = m_grabber.StartGrab(); };
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0"));
    ASSERT_TRUE(m_grabber.StartGrab());
    ASSERT_TRUE(m_host.WaitForFrames(1));
    EXPECT_TRUE(m_grabber.StopGrab());
    EXPECT_FALSE(started);
}

TEST_F(SimulatedGrabberTest, RefusesToStartWhileItGrabs) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0.001"));
    ASSERT_TRUE(m_grabber.StartGrab());
    EXPECT_FALSE(m_grabber.StartGrab());
    EXPECT_EQ(ErrorOf(m_grabber), "The last grab has not ended.");
}

TEST_F(SimulatedGrabberTest, FollowsTheCamerasGeometry) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0;Frames=1"));
    m_host.Set("Width", -3);
    EXPECT_FALSE(m_grabber.StartGrab());
    EXPECT_EQ(ErrorOf(m_grabber), "The simulated grabber can't make pictures of the camera's width -3.");
    m_host.Set("Width", 128);
    EXPECT_TRUE(m_grabber.StartGrab());
    EXPECT_TRUE(m_host.WaitForFrames(1));
}

TEST_F(SimulatedGrabberTest, WatchesItsNodesWithoutAKind) {
    ASSERT_TRUE(Init("SaperaSimulated;Trigger=On"));
    EXPECT_EQ(m_host.Kinds(), std::vector<std::uint32_t>(5, 0));
}

TEST_F(SimulatedGrabberTest, EndsItsWatchesAtShutdown) {
    ASSERT_TRUE(Init("SaperaSimulated;Trigger=On"));
    m_grabber.Shutdown();
    EXPECT_EQ(m_host.deregistered, 5);
    m_grabber.Shutdown();
    EXPECT_EQ(m_host.deregistered, 5);
}

TEST_F(SimulatedGrabberTest, IsTriggeredAtAnyMomentOfItsWait) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0;Trigger=On"));
    ASSERT_TRUE(m_grabber.StartGrab());
    for (std::size_t round = 1; round <= 100; ++round) {
        for (std::size_t turn = 0; turn < 10 * round; ++turn)
            std::this_thread::yield();
        m_host.Set("DebugData1", static_cast<std::int64_t>(round));
        ASSERT_TRUE(m_host.WaitForFrames(round));
    }
    EXPECT_TRUE(m_grabber.StopGrab());
    EXPECT_EQ(m_host.Tags().size(), 100U);
}

TEST_F(SimulatedGrabberTest, MakesNoFrameForACountBelowZero) {
    ASSERT_TRUE(Init("SaperaSimulated;FrameRate=0;Trigger=On"));
    ASSERT_TRUE(m_grabber.StartGrab());
    m_host.Set("DebugData1", -1);
    EXPECT_TRUE(m_grabber.StopGrab());
    EXPECT_TRUE(m_host.Tags().empty());
}

TEST_F(SimulatedGrabberTest, FailsAsItIsAsked) {
    EXPECT_FALSE(Init("SaperaSimulated;FailInit=No board"));
    EXPECT_EQ(ErrorOf(m_grabber), "No board");
    ASSERT_TRUE(Init("SaperaSimulated;FailStart=No clock;FailStop=Stuck"));
    EXPECT_FALSE(m_grabber.StartGrab());
    EXPECT_EQ(ErrorOf(m_grabber), "No clock");
    EXPECT_FALSE(m_grabber.StopGrab());
    EXPECT_EQ(ErrorOf(m_grabber), "Stuck");
}

TEST_F(SimulatedGrabberTest, RefusesNonsense) {
    EXPECT_FALSE(Init("SaperaSimulated;Nonsense"));
    EXPECT_FALSE(m_grabber.Init("SaperaSimulated", nullptr));
    EXPECT_FALSE(m_grabber.StartGrab());
    EXPECT_TRUE(m_grabber.Init(nullptr, &m_host));
}

TEST_F(SimulatedGrabberTest, WritesNoMoreOfATextThanFits) {
    EXPECT_FALSE(Init("SaperaSimulated;FailInit=abcdef"));
    char buffer[4] = {'-', '-', '-', '-'};
    EXPECT_EQ(m_grabber.GetLastErrorText(buffer, 3), 6U);
    EXPECT_EQ(std::string(buffer, 4), "abc-");
}

TEST_F(SimulatedGrabberTest, KnowsItsPixelClock) {
    ASSERT_TRUE(Init("SaperaSimulated;PixelClock=40000000"));
    EXPECT_EQ(m_grabber.GetValue(0xC10C), 40000000U);
    EXPECT_EQ(m_grabber.GetValue(1), 0U);
}

TEST_F(SimulatedGrabberTest, SwitchesPoCL) {
    ASSERT_TRUE(Init("SaperaSimulated;PoCL=Off"));
    EXPECT_EQ(m_grabber.PoCLControl(20), 0);
    m_grabber.PoCLControl(1);
    EXPECT_EQ(m_grabber.PoCLControl(20), 1);
    m_grabber.PoCLControl(0);
    EXPECT_EQ(m_grabber.PoCLControl(20), 0);
    ASSERT_TRUE(Init("SaperaSimulated"));
    EXPECT_EQ(m_grabber.PoCLControl(20), 1);
}

}  // namespace
