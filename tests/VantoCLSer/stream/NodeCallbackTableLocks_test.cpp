/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Watching nodes while somebody has a node map locked
 */

#include "VantoCLSer/stream/NodeCallbackTable.h"

#include <future>
#include <thread>

#include "NodeCallbacksFixture.h"
#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using testing::ElementsAre;

/// Somebody has a node map locked, as a node's callback has, while a thread of the plug-in uses the table.
class NodeCallbacksWithALockedMap : public NodeCallbacks {
public:
    NodeCallbacksWithALockedMap() {
        m_plugin->hookContext = this;
        m_grabber->PrepareGrab();
    }

    template <class Action>
    static auto OnAnotherThread(const Action& action) {
        return std::async(std::launch::async, action).get();
    }
    /// The plug-in's StopGrab waits for its thread, which does something with the table.
    void StopWhile(std::function<void()> action) {
        m_action = std::move(action);
        m_plugin->onStop = [](void* self) {
            OnAnotherThread(static_cast<NodeCallbacksWithALockedMap*>(self)->m_action);
        };
        m_grabber->CancelGrab();
        m_plugin->onStop = nullptr;
    }
    GenApi::CLock& LockOfCamera() { return m_device->GetNodeMap()->GetLock(); }
    GenApi::CLock& LockOfStream() { return m_grabber->GetNodeMap()->GetLock(); }

    std::function<void()> m_action;
};

TEST_F(NodeCallbacksWithALockedMap, AreNotBegunWhenItsOwnerStopsThePlugin) {
    Watch watch;
    for (const bool isCamera : {true, false}) {
        const GenApi::AutoLock lock(isCamera ? LockOfCamera() : LockOfStream());
        StopWhile([&] { EXPECT_EQ(WatchDevice("OffsetX", watch), 0U); });
    }
    {
        const GenApi::AutoLock lock(LockOfStream());
        StopWhile([&] { EXPECT_EQ(WatchStream("DebugData1", watch), 0U); });
    }
    EXPECT_TRUE(watch.calls.empty());
    EXPECT_EQ(m_log->CountFormat("Exception setting node callback. (%s)", tracelog::kError), 3U);
    EXPECT_EQ(WatchDevice("OffsetX", watch), 4U);
}

TEST_F(NodeCallbacksWithALockedMap, EndWhenItsOwnerStopsThePlugin) {
    Watch first;
    Watch second;
    const std::uint64_t a = WatchDevice("OffsetX", first);
    const std::uint64_t b = WatchDevice("OffsetX", second);
    const std::uint64_t c = WatchStream("DebugData1", first);
    first.calls.clear();
    second.calls.clear();
    {
        const GenApi::AutoLock camera(LockOfCamera());
        const GenApi::AutoLock stream(LockOfStream());
        StopWhile([&] {
            EXPECT_FALSE(Unwatch(a));
            EXPECT_TRUE(Unwatch(b));
            EXPECT_TRUE(Unwatch(c));
            EXPECT_FALSE(Unwatch(b));
        });
    }
    m_log->Clear();
    m_device.Set("OffsetX", 1);
    SetStream("DebugData1", 1);
    EXPECT_TRUE(first.calls.empty());
    EXPECT_TRUE(second.calls.empty());
    EXPECT_TRUE(m_log->GetMessages().empty());
}

TEST_F(NodeCallbacksWithALockedMap, CanBeBegunAgainForANodeThatWasLeft) {
    Watch watch;
    const std::uint64_t handle = WatchDevice("OffsetX", watch);
    {
        const GenApi::AutoLock lock(LockOfCamera());
        OnAnotherThread([&] { EXPECT_TRUE(Unwatch(handle)); });
        watch.calls.clear();
        EXPECT_EQ(WatchDevice("OffsetX", watch), handle);
    }
    m_device.Set("OffsetX", 5);
    EXPECT_THAT(watch.calls, ElementsAre(std::pair{0, 0U}, std::pair{5, 0U}));  // and not twice
    EXPECT_TRUE(Unwatch(handle));
}

TEST_F(NodeCallbacksWithALockedMap, LeaveNothingBehindAfterTheNextOneThatEnds) {
    Watch watch;
    const std::uint64_t left = WatchDevice("OffsetX", watch);
    const std::uint64_t other = WatchDevice("OffsetY", watch);
    {
        const GenApi::AutoLock lock(LockOfCamera());
        OnAnotherThread([&] { EXPECT_TRUE(Unwatch(left)); });
    }
    EXPECT_TRUE(Unwatch(other));
    EXPECT_EQ(WatchDevice("Gain", watch), 0U);
    EXPECT_EQ(WatchStream("DebugData1", watch), left);  // its place is free again
}

TEST_F(NodeCallbacksWithALockedMap, EndWithAStreamGrabberThatItsOwnerDestroys) {
    Watch watch;
    const std::uint64_t handle = WatchDevice("OffsetX", watch);
    const GenApi::AutoLock camera(LockOfCamera());
    m_action = [&] {
        EXPECT_FALSE(Unwatch(handle));
        EXPECT_EQ(WatchDevice("OffsetX", watch), 0U);
    };
    m_plugin->onShutdown = [](void* self) {
        OnAnotherThread(static_cast<NodeCallbacksWithALockedMap*>(self)->m_action);
    };
    m_grabber.reset();
    EXPECT_EQ(m_log->CountFormat("Exception setting node callback. (%s)", tracelog::kError), 1U);
}

// A node of the camera changes, its width is copied, and the application ends the grab when it hears that.
TEST_F(NodeCallbacksWithALockedMap, EndWhileOthersAreCalled) {
    Watch watch;
    m_device->_GetNode("Width")->ImposeAccessMode(GenApi::RW);  // the grab is prepared
    const std::uint64_t handle = WatchDevice("Width", watch);
    bool isEnded = false;
    const auto foreign = GenApi::Register(m_grabber->GetNodeMap()->GetNode("Width"), [&](GenApi::INode*) {
        if (!std::exchange(isEnded, true))
            StopWhile([&] { EXPECT_FALSE(Unwatch(handle)); });
    });
    watch.calls.clear();
    m_device.Set("Width", 16);
    EXPECT_TRUE(isEnded);
    EXPECT_TRUE(watch.calls.empty());
    m_grabber->GetNodeMap()->GetNode("Width")->DeregisterCallback(foreign);
}

TEST_F(NodeCallbacks, EndWhenTheirFunctionHasReturned) {
    Watch watch;
    const std::uint64_t handle = WatchDevice("OffsetX", watch);
    std::promise<void> isInside;
    std::promise<void> mayLeave;
    watch.onCall = [&] {
        isInside.set_value();
        mayLeave.get_future().wait();
    };
    auto change = std::async(std::launch::async, [&] { m_device.Set("OffsetX", 1); });
    isInside.get_future().wait();
    auto end = std::async(std::launch::async, [&] { return Unwatch(handle); });
    EXPECT_EQ(end.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    mayLeave.set_value();
    EXPECT_TRUE(end.get());
}

bool IsLocked(GenApi::INodeMap* map) {
    return !std::async(std::launch::async, [map] {
                const bool isFree = map->GetLock().TryLock();
                if (isFree)
                    map->GetLock().Unlock();
                return isFree;
            }).get();
}

void WaitUntilLocked(GenApi::INodeMap* map) {
    while (!IsLocked(map))
        std::this_thread::yield();
}

// One thread reads a register of the stream grabber, another one changes a node of the camera that is watched. A
// plug-in should not watch nodes in its StartGrab; one that does may not hang.
TEST_F(NodeCallbacks, MayBeginWhileThePluginStarts) {
    struct Context {
        NodeCallbacks& test;
        Watch watch;
        std::future<void> reader;
        std::future<void> writer;
    } context{*this, {}, {}, {}};
    WatchDevice("OffsetY", context.watch);
    m_plugin->hookContext = &context;
    m_plugin->onStart = [](void* pointer) {
        auto& self = *static_cast<Context*>(pointer);
        GenApi::INodeMap* const stream = self.test.m_grabber->GetNodeMap();
        self.reader = std::async(std::launch::async, [stream] {
            GenApi::CIntegerPtr(stream->GetNode("PixelClockDetected"))->GetValue(false, true);
        });
        WaitUntilLocked(stream);
        self.writer = std::async(std::launch::async, [&self] { self.test.m_device.Set("OffsetY", 5); });
        WaitUntilLocked(self.test.m_device->GetNodeMap());
        EXPECT_NE(self.test.WatchDevice("OffsetX", self.watch), 0U);
    };
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    context.reader.get();
    context.writer.get();
    EXPECT_EQ(m_device.Value("OffsetY"), 5);
}

TEST_F(NodeCallbacks, ChangesOfBothMapsAtOnceDoNotBlockEachOther) {
    Watch watch;
    std::mutex lock;
    watch.onCall = [&] { const std::lock_guard guard(lock); };
    WatchStream("Width", watch);
    constexpr int kRounds = 2000;
    const auto camera = std::async(std::launch::async, [&] {
        for (int round = 0; round < kRounds; ++round) {
            try {
                m_device.Set("Width", 8 + round % 7);
            } catch (const GenICam::AccessException&) {
                // The grab of the other thread locks the node.
            }
        }
    });
    const auto stream = std::async(std::launch::async, [&] {
        for (int round = 0; round < kRounds; ++round)
            SetStream("Width", 8 + round % 5);
    });
    const auto clock = std::async(std::launch::async, [&] {
        GenApi::CIntegerPtr node = m_grabber->GetNodeMap()->GetNode("PixelClockDetected");
        for (int round = 0; round < kRounds; ++round)
            node->GetValue(false, true);
    });
    const auto watches = std::async(std::launch::async, [&] {
        Watch other;
        for (int round = 0; round < kRounds / 4; ++round) {
            Unwatch(WatchStream("Height", other));
            Unwatch(WatchDevice("Height", other));
        }
    });
    for (int round = 0; round < kRounds / 4; ++round) {
        m_grabber->PrepareGrab();
        m_grabber->FinishGrab();
    }
}

}  // namespace
