/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Watching nodes, through the operations that a plug-in calls
 */

#include "VantoCLSer/stream/NodeCallbackTable.h"

#include <future>

#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using testing::ElementsAre;

/// What a watching function was told.
struct Watch {
    std::vector<std::pair<std::int64_t, std::uint32_t>> calls;
    std::function<void()> onCall;

    static void Call(std::int64_t value, void* context, std::uint32_t kind) {
        auto& self = *static_cast<Watch*>(context);
        self.calls.emplace_back(value, kind);
        if (const std::function<void()> action = self.onCall)
            action();
    }
};

class NodeCallbacks : public StreamTest {
public:
    const PlainCalleeTable& Table() { return *m_plugin->callee->table; }
    std::uint64_t WatchDevice(const char* node, Watch& watch, std::uint32_t kind = 0) {
        return Table().registerDeviceNodeCallback(m_plugin->callee, node, &Watch::Call, &watch, kind);
    }
    std::uint64_t WatchStream(const char* node, Watch& watch, std::uint32_t kind = 0) {
        return Table().registerStreamNodeCallback(m_plugin->callee, node, &Watch::Call, &watch, kind);
    }
    bool Unwatch(std::uint64_t handle) { return Table().deregisterNodeCallback(m_plugin->callee, handle); }
    void SetStream(const char* node, std::int64_t value) {
        GenApi::CIntegerPtr(m_grabber->GetNodeMap()->GetNode(node))->SetValue(value);
    }
};

TEST_F(NodeCallbacks, HandlesArePositionsBehindTheOwnThree) {
    Watch watch;
    EXPECT_EQ(WatchDevice("OffsetX", watch), 4U);
    EXPECT_EQ(WatchStream("DebugData1", watch), 5U);
    Unwatch(4);
    EXPECT_EQ(WatchDevice("OffsetY", watch), 4U);
    EXPECT_EQ(WatchDevice("OffsetX", watch), 6U);
}

TEST_F(NodeCallbacks, AreCalledAtOnceAndAtEveryChange) {
    Watch watch;
    WatchDevice("OffsetX", watch, 7);
    m_device.Set("OffsetX", 5);
    EXPECT_THAT(watch.calls, ElementsAre(std::pair{0, 7U}, std::pair{5, 7U}));
}

TEST_F(NodeCallbacks, KnowEnumerations) {
    Watch watch;
    WatchDevice("PixelFormat", watch);
    m_device.Set("PixelFormat", 0x01100005);
    EXPECT_THAT(watch.calls, ElementsAre(std::pair{0x01080001, 0U}, std::pair{0x01100005, 0U}));
}

TEST_F(NodeCallbacks, WatchTheStreamGrabberItself) {
    Watch watch;
    WatchStream("DebugData1", watch, 3);
    SetStream("DebugData1", -8);
    EXPECT_THAT(watch.calls, ElementsAre(std::pair{0, 3U}, std::pair{-8, 3U}));
}

TEST_F(NodeCallbacks, AreToldAllBitsOfAValue) {
    Watch watch;
    WatchStream("DebugData1", watch, 0xFFFFFFFF);
    SetStream("DebugData1", std::int64_t{-1} << 40);
    EXPECT_THAT(watch.calls, ElementsAre(std::pair{0, 0xFFFFFFFFU}, std::pair{std::int64_t{-1} << 40, 0xFFFFFFFFU}));
}

TEST_F(NodeCallbacks, AreToldZeroForOtherKindsOfNodes) {
    Watch watch;
    WatchStream("CopyAOIFromCamera", watch);
    EXPECT_THAT(watch.calls, ElementsAre(std::pair{0, 0U}));
    EXPECT_EQ(m_log->CountText("Invalid node type. Only inter like types are supported", tracelog::kError), 1U);
}

TEST_F(NodeCallbacks, NeedAllArguments) {
    Watch watch;
    EXPECT_EQ(Table().registerDeviceNodeCallback(m_plugin->callee, nullptr, nullptr, &watch, 0), 0U);
    EXPECT_EQ(m_log->CountText("Invalid nodename passed.", tracelog::kError), 1U);
    EXPECT_EQ(Table().registerStreamNodeCallback(m_plugin->callee, "Width", nullptr, &watch, 0), 0U);
    EXPECT_EQ(m_log->CountText("Invalid callbackaddress passed.", tracelog::kError), 1U);
    m_grabber->RegisterNodeCallback(nullptr, "Width", &Watch::Call, &watch, 0);
    EXPECT_EQ(m_log->CountText("Cannot setup nodemap callback on null nodemap.", tracelog::kError), 1U);
    EXPECT_EQ(WatchDevice("NoSuchNode", watch), 0U);
    EXPECT_EQ(m_log->CountText("Could not register nodecallback for node (NoSuchNode)", tracelog::kWarning), 1U);
    EXPECT_TRUE(watch.calls.empty());
}

TEST_F(NodeCallbacks, RunInTheOrderOfTheTable) {
    std::vector<int> order;
    Watch first{{}, [&] { order.push_back(1); }};
    Watch second{{}, [&] { order.push_back(2); }};
    WatchDevice("OffsetX", first);
    WatchDevice("OffsetX", second);
    order.clear();
    m_device.Set("OffsetX", 1);
    EXPECT_THAT(order, ElementsAre(1, 2));
}

TEST_F(NodeCallbacks, ShareTheRegistrationOfANode) {
    Watch first;
    Watch second;
    const std::uint64_t a = WatchDevice("OffsetX", first);
    const std::uint64_t b = WatchDevice("OffsetX", second);
    first.calls.clear();
    m_device.Set("OffsetX", 1);
    EXPECT_EQ(first.calls.size(), 1U);  // one registration: the table is walked once
    EXPECT_FALSE(Unwatch(a));
    second.calls.clear();
    m_device.Set("OffsetX", 2);
    EXPECT_EQ(second.calls.size(), 1U);
    EXPECT_TRUE(Unwatch(b));
    m_device.Set("OffsetX", 3);
    EXPECT_EQ(second.calls.size(), 1U);
    EXPECT_EQ(first.calls.size(), 1U);
}

TEST_F(NodeCallbacks, UnknownHandlesAreNothing) {
    Watch watch;
    const std::uint64_t handle = WatchDevice("OffsetX", watch);
    EXPECT_FALSE(Unwatch(0));
    EXPECT_FALSE(Unwatch(handle + 1));
    EXPECT_FALSE(Unwatch(~std::uint64_t{0}));
    EXPECT_TRUE(Unwatch(handle));
    EXPECT_FALSE(Unwatch(handle));
}

TEST_F(NodeCallbacks, MayEndTheirOwnWatch) {
    Watch watch;
    const std::uint64_t handle = WatchDevice("OffsetX", watch);
    watch.onCall = [&] { EXPECT_TRUE(Unwatch(handle)); };
    m_device.Set("OffsetX", 1);
    m_device.Set("OffsetX", 2);
    EXPECT_EQ(watch.calls.size(), 2U);
}

TEST_F(NodeCallbacks, MayEndOthersThatAreNotCalledAnyMore) {
    Watch first;
    Watch second;
    Watch third;
    WatchDevice("OffsetX", first);
    const std::uint64_t handle = WatchDevice("OffsetX", second);
    WatchDevice("OffsetX", third);
    first.onCall = [&] { EXPECT_FALSE(Unwatch(handle)); };
    second.calls.clear();
    third.calls.clear();
    m_device.Set("OffsetX", 1);
    EXPECT_TRUE(second.calls.empty());
    EXPECT_EQ(third.calls.size(), 1U);
}

TEST_F(NodeCallbacks, MayBeginOthers) {
    std::vector<Watch> others(30);
    Watch watch;
    WatchDevice("OffsetX", watch);
    watch.onCall = [&] {
        watch.onCall = nullptr;
        for (Watch& other : others)
            WatchDevice("OffsetY", other);
    };
    m_device.Set("OffsetX", 1);
    m_device.Set("OffsetY", 6);
    for (const Watch& other : others)
        EXPECT_EQ(other.calls.back().first, 6);
}

TEST_F(NodeCallbacks, MayThrow) {
    Watch genicam{{}, [] { throw RUNTIME_EXCEPTION("of %s", "GenICam"); }};
    Watch standard{{}, [] { throw std::runtime_error("of the language"); }};
    Watch number{{}, [] { throw 42; }};
    Watch last;
    WatchDevice("OffsetX", genicam);
    WatchDevice("OffsetX", standard);
    WatchDevice("OffsetX", number);
    WatchDevice("OffsetX", last);
    m_log->Clear();
    m_device.Set("OffsetX", 1);
    EXPECT_EQ(last.calls.back().first, 1);
    EXPECT_EQ(m_log->CountText("GenericException in callback func (of GenICam)", tracelog::kError), 1U);
    EXPECT_EQ(m_log->CountText("std::exception in callback func (of the language)", tracelog::kError), 1U);
    EXPECT_EQ(m_log->CountText("Unknown exception in callback func", tracelog::kError), 1U);
}

TEST_F(NodeCallbacks, SurviveAnotherOneThatThrowsAtTheirRegistration) {
    GenApi::INode* const node = m_device->_GetNode("OffsetX");
    const auto foreign = GenApi::Register(node, [](GenApi::INode*) { throw std::runtime_error("of a foreigner"); });
    Watch watch;
    const std::uint64_t handle = WatchDevice("OffsetX", watch);
    EXPECT_EQ(m_log->CountText("Exception setting node callback. (of a foreigner)", tracelog::kError), 1U);
    node->DeregisterCallback(foreign);
    m_device.Set("OffsetX", 1);
    EXPECT_EQ(watch.calls.back().first, 1);
    EXPECT_TRUE(Unwatch(handle));
}

TEST_F(NodeCallbacks, WarnOfANodeThatNobodyWatches) {
    m_grabber->OnNodeChanged(m_device->_GetNode("OffsetY"));
    EXPECT_EQ(m_log->CountText("Node not registered in callback table", tracelog::kWarning), 1U);
}

TEST_F(NodeCallbacks, EndWithTheStreamGrabber) {
    Watch watch;
    WatchDevice("OffsetX", watch);
    m_plugin->hookContext = this;
    // The plug-in ends its watches, too, and must not be able to begin one.
    m_plugin->onShutdown = [](void* self) {
        auto& test = *static_cast<NodeCallbacks*>(self);
        EXPECT_FALSE(test.Unwatch(4));
        Watch late;
        EXPECT_EQ(test.WatchDevice("OffsetX", late), 0U);
        EXPECT_EQ(test.m_log->CountFormat("Exception setting node callback. (%s)", tracelog::kError), 1U);
    };
    m_grabber.reset();
    m_device.Set("OffsetX", 1);
    m_device.Set("Width", 100);
    EXPECT_EQ(watch.calls.size(), 1U);
}

TEST(NodeCallbacksOfRegister, EndWhereTheValueCannotBeRead) {
    const scripted::ScopedVariable root("VANTO_ROOT", TreeOf("plain"));
    PlainPlugin plugin;
    OpenDevice device(CameraXml().With("OffsetY", CameraXml::Register("OffsetY", 0)));
    CVantoCLSerStreamGrabber grabber("Sapera", device.Get());
    grabber.Initialize();
    const tracelog::LogRecorder log("Vanto.CLSer.Stream:trace");
    Watch watch;
    device.Memory().isGone = true;
    grabber.RegisterDeviceNodeCallback("OffsetY", &Watch::Call, &watch, 0);
    EXPECT_TRUE(watch.calls.empty());
    EXPECT_EQ(log.CountFormat("Exception getting node value (%s)", tracelog::kError), 1U);
}

/// A stream grabber whose application watches nodes in its own way.
class OverridingGrabber : public CVantoCLSerStreamGrabber {
public:
    using CVantoCLSerStreamGrabber::CVantoCLSerStreamGrabber;
    void RegisterNodeCallback(GenApi::INodeMap* map, const char* nodeName, FgNodeCallback function, void* context,
                              std::uint32_t kind) override {
        names.emplace_back(nodeName);
        if (std::string(nodeName) != "Height")
            CVantoCLSerStreamGrabber::RegisterNodeCallback(map, nodeName, function, context, kind + 1);
    }
    std::vector<std::string> names;
};

TEST_F(NodeCallbacks, OfAPluginGoThroughTheOperationForThem) {
    OverridingGrabber grabber("Sapera", m_device.Get());
    grabber.Initialize();
    EXPECT_THAT(std::exchange(grabber.names, {}), ElementsAre("Width", "Height", "PixelSize"));
    Watch watch;
    EXPECT_EQ(WatchDevice("OffsetX", watch, 1), 3U);  // there is none for Height
    EXPECT_EQ(WatchStream("DebugData1", watch, 5), 4U);
    EXPECT_EQ(WatchDevice("Height", watch), 0U);
    EXPECT_THAT(grabber.names, ElementsAre("OffsetX", "DebugData1", "Height"));
    EXPECT_THAT(watch.calls, ElementsAre(std::pair{0, 2U}, std::pair{0, 6U}));
}

TEST_F(NodeCallbacks, HaveTheirOwnHandleWhenTheyBeginOthersAtOnce) {
    Watch inner;
    Watch outer;
    std::uint64_t innerHandle = 0;
    outer.onCall = [&] {
        outer.onCall = nullptr;
        innerHandle = WatchDevice("OffsetY", inner);
    };
    EXPECT_EQ(WatchDevice("OffsetX", outer), 4U);
    EXPECT_EQ(innerHandle, 5U);
}

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
