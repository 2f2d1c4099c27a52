/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a stream grabber takes over from the camera's node map
 */

#include "VantoCLSer/stream/GrabberNodes.h"

#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using GenICam::GenericException;
using GenICam::RuntimeException;

class GrabberNodes : public StreamTest {
protected:
    GenApi::CIntegerPtr Own(const char* name) { return m_grabber->GetNodeMap()->GetNode(name); }
};

class GrabberNodesAtStart : public testing::Test {
protected:
    template <class Exception>
    std::string FailureWith(const CameraXml& camera) {
        const OpenDevice device(camera);
        CVantoCLSerStreamGrabber grabber("Sapera", device.Get());
        return MessageOf<Exception>([&] { grabber.Initialize(); });
    }
    bool IsLogged(std::uint32_t level, const std::string& beginning) const {
        for (const tracelog::LogMessage& message : m_log.GetMessages()) {
            if (message.level == level && message.text.starts_with(beginning))
                return true;
        }
        return false;
    }

    scripted::ScopedVariable m_root{"VANTO_ROOT", TreeOf("plain")};
    PlainPlugin m_plugin;
    tracelog::LogRecorder m_log{"Vanto.CLSer.Stream:trace"};
};

TEST_F(GrabberNodesAtStart, NeedOffsetX) {
    EXPECT_EQ(FailureWith<RuntimeException>(CameraXml().Without("OffsetX")),
              "Missing node 'OffsetX' in device nodemap.");
    EXPECT_TRUE(
        IsLogged(tracelog::kError, "Error accessing stream grabber or device XML nodes (Missing node 'OffsetX'"));
    EXPECT_STREQ(m_plugin->calls, "");
}

TEST_F(GrabberNodesAtStart, NeedTheRightKindOfNode) {
    const std::string text =
        "<StringReg Name=\"OffsetX\"><Address>0</Address><Length>4</Length><AccessMode>RW"
        "</AccessMode><pPort>Device</pPort></StringReg>";
    EXPECT_EQ(FailureWith<RuntimeException>(CameraXml().With("OffsetX", text)),
              "Invalid node type for node 'OffsetX' in device nodemap.");
}

TEST_F(GrabberNodesAtStart, NeedTheRightKindOfOptionalNode) {
    EXPECT_EQ(FailureWith<RuntimeException>(CameraXml().With("OffsetY",
                                                             "<Boolean Name=\"OffsetY\"><Value>0</Value>"
                                                             "</Boolean>")),
              "Invalid node type for node 'OffsetY' in device nodemap.");
}

TEST_F(GrabberNodesAtStart, SkipOffsetY) {
    const OpenDevice device(CameraXml().Without("OffsetY"));
    CVantoCLSerStreamGrabber grabber("Sapera", device.Get());
    grabber.Initialize();
    EXPECT_TRUE(IsLogged(tracelog::kTrace, "Skipping optional node 'OffsetY'"));
}

TEST_F(GrabberNodesAtStart, DoWithoutPixelSize) {
    const OpenDevice device(CameraXml().Without("PixelSize"));
    CVantoCLSerStreamGrabber grabber("Sapera", device.Get());
    grabber.Initialize();
    EXPECT_TRUE(IsLogged(tracelog::kWarning, "Could not register nodecallback for node (PixelSize)"));
    EXPECT_EQ(GenApi::CIntegerPtr(grabber.GetNodeMap()->GetNode("PayloadSize"))->GetValue(), 8 * 4 * 2);
}

TEST_F(GrabberNodesAtStart, DoWithoutWidth) {
    const OpenDevice device(CameraXml().Without("Width"));
    CVantoCLSerStreamGrabber grabber("Sapera", device.Get());
    grabber.Initialize();
    EXPECT_TRUE(IsLogged(tracelog::kWarning, "Could not register nodecallback for node (Width)"));
    EXPECT_EQ(GenApi::CIntegerPtr(grabber.GetNodeMap()->GetNode("Width"))->GetValue(), 1024);
    EXPECT_EQ(GenApi::CIntegerPtr(grabber.GetNodeMap()->GetNode("Height"))->GetValue(), 4);
}

TEST_F(GrabberNodesAtStart, FailWithoutDescription) {
    scripted::Environment environment;
    CVantoCLSerPort port("Scripted#Port0");
    CVantoCLSerDevice* const device = CVantoCLSerDevice::Create(CDeviceInfo(), port);
    {
        CVantoCLSerStreamGrabber grabber("Sapera", device);
        EXPECT_EQ(MessageOf<RuntimeException>([&] { grabber.Initialize(); }),
                  "Missing node 'OffsetX' in device nodemap.");
    }
    device->DestroySelf();
}

TEST_F(GrabberNodes, TakeTheGeometryOverAtStart) {
    EXPECT_EQ(Own("Width")->GetValue(), 8);
    EXPECT_EQ(Own("Height")->GetValue(), 4);
    EXPECT_EQ(Own("PixelSizeByte")->GetValue(), 1);
    EXPECT_EQ(Own("PayloadSize")->GetValue(), 32);
    EXPECT_EQ(Own("MaxBufferSize")->GetValue(), 32);
}

TEST_F(GrabberNodes, FollowTheGeometry) {
    m_device.Set("Width", 640);
    m_device.Set("Height", 480);
    EXPECT_EQ(Own("Width")->GetValue(), 640);
    EXPECT_EQ(Own("PayloadSize")->GetValue(), 640 * 480);
    EXPECT_EQ(Own("MaxBufferSize")->GetValue(), 32);
}

TEST_F(GrabberNodes, FollowOnlyWhereThatIsWanted) {
    GenApi::CBooleanPtr(m_grabber->GetNodeMap()->GetNode("CopyAOIFromCamera"))->SetValue(false);
    m_device.Set("Width", 640);
    EXPECT_EQ(Own("Width")->GetValue(), 8);
}

TEST_F(GrabberNodes, TakeBothOverWhenOneChanges) {
    const GenApi::CBooleanPtr isWanted = m_grabber->GetNodeMap()->GetNode("CopyAOIFromCamera");
    isWanted->SetValue(false);
    m_device.Set("Width", 640);
    isWanted->SetValue(true);
    EXPECT_EQ(Own("Width")->GetValue(), 8);
    m_device.Set("Height", 480);
    EXPECT_EQ(Own("Width")->GetValue(), 640);
}

TEST_F(GrabberNodes, LeaveAnUnreadableWidth) {
    m_device->_GetNode("Width")->ImposeAccessMode(GenApi::WO);
    m_device.Set("Width", 640);
    m_device.Set("Height", 480);
    EXPECT_EQ(Own("Width")->GetValue(), 8);
    EXPECT_EQ(Own("Height")->GetValue(), 480);
    EXPECT_EQ(m_log->CountFormat("Could not copy AOI from camera node map (message='%hs)"), 0U);
}

TEST_F(GrabberNodes, RoundThePixelSizeUpToBytes) {
    for (const auto& [bits, bytes] :
         {std::pair{8, 1}, std::pair{9, 2}, std::pair{16, 2}, std::pair{17, 3}, std::pair{24, 3}}) {
        m_device.Set("PixelSize", bits);
        EXPECT_EQ(Own("PixelSizeByte")->GetValue(), bytes) << bits;
    }
}

TEST_F(GrabberNodes, LeaveAPixelSizeThatIsNotWritable) {
    m_grabber->GetNodeMap()->GetNode("PixelSizeByte")->ImposeAccessMode(GenApi::RO);
    m_device.Set("PixelSize", 24);
    EXPECT_EQ(Own("PixelSizeByte")->GetValue(), 1);
    EXPECT_EQ(CountLevel(*m_log, tracelog::kWarning), 0U);
}

TEST_F(GrabberNodes, WarnOfAGeometryThatCannotBeTakenOver) {
    m_device.Set("Width", 0);  // below the minimum
    EXPECT_EQ(Own("Width")->GetValue(), 8);
    EXPECT_EQ(m_log->CountFormat("Could not copy AOI from camera node map (message='%hs)", tracelog::kWarning), 1U);
}

TEST_F(GrabberNodes, WarnOfAPixelSizeThatCannotBeSet) {
    GenApi::INode* const node = m_grabber->GetNodeMap()->GetNode("PixelSizeByte");
    const auto handle = GenApi::Register(node, [](GenApi::INode*) { throw RUNTIME_EXCEPTION("of a watcher"); });
    m_device.Set("PixelSize", 24);
    EXPECT_EQ(m_log->CountFormat("Could not set pixel size in bytes (message='%hs)", tracelog::kWarning), 1U);
    EXPECT_EQ(m_log->CountText("Could not set pixel size in bytes (message='of a watcher)"), 1U);
    node->DeregisterCallback(handle);
}

class GrabberNodesOfRegisters : public StreamTest {
protected:
    GrabberNodesOfRegisters() : StreamTest(CameraXml().With("OffsetX", CameraXml::Register("OffsetX", 0))) {}
};

TEST_F(GrabberNodesOfRegisters, LeaveAnUnreadableOffset) {
    m_device->_GetNode("OffsetX")->ImposeAccessMode(GenApi::WO);
    m_device.Memory().isGone = true;
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_plugin.Deliver(Frame());
    const GrabResult result = Retrieve();
    EXPECT_EQ(result.status, Grabbed);
    EXPECT_EQ(result.offsetX, 0);
}

}  // namespace
