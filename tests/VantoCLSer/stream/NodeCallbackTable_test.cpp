/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Watching nodes, through the operations that a plug-in calls
 */

#include "VantoCLSer/stream/NodeCallbackTable.h"

#include "NodeCallbacksFixture.h"
#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using testing::ElementsAre;

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

}  // namespace
