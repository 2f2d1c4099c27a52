/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Grabbing from the simulated frame grabber
 */

#include "SimulatedStream.h"

namespace {

using namespace stream_test;
using namespace Vanto;

// Frames of the long run; sanitizers and builds without optimisation take a part of it.
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
constexpr std::uint64_t kFrames = 10000;
#else
constexpr std::uint64_t kFrames = 1000;
#endif

CameraXml CameraOf(std::int64_t width, std::int64_t height) {
    return CameraXml()
        .With("Width", CameraXml::Integer("Width", width))
        .With("Height", CameraXml::Integer("Height", height));
}

/// Grabs as many frames as are triggered, checks each and returns how many have come; every n-th is dropped.
std::uint64_t GrabInOrder(SimulatedStream& stream, std::uint64_t frames, std::uint64_t dropEvery) {
    stream.AddBuffers(8);
    stream->PrepareGrab();
    stream.QueueAll();
    std::uint64_t triggered = stream.handles.size();
    stream.Trigger(triggered);
    std::uint64_t taken = 0;
    for (std::uint64_t number = 0; number < frames; ++number) {
        if (dropEvery != 0 && (number + 1) % dropEvery == 0) {
            stream.Trigger(++triggered);
            continue;
        }
        const GrabResult result = stream.Next();
        EXPECT_EQ(result.frameTag, number);
        EXPECT_EQ(SimulatedStream::NumberOf(result), number);
        if (testing::Test::HasFailure())
            break;
        ++taken;
        stream->QueueBuffer(result.handle);
        stream.Trigger(++triggered);
    }
    stream->FinishGrab();
    return taken;
}

TEST(SimulatedGrab, LosesNoByteOfManyFrames) {
    SimulatedStream stream("SaperaSimulated;FrameRate=0;Trigger=On", CameraOf(1024, 1024));
    EXPECT_EQ(GrabInOrder(stream, kFrames, 0), kFrames);
}

TEST(SimulatedGrab, LeavesGapsOut) {
    SimulatedStream stream("SaperaSimulated;FrameRate=0;Trigger=On;Pitch=64", CameraOf(1000, 100));
    EXPECT_EQ(GrabInOrder(stream, 100, 0), 100U);
}

TEST(SimulatedGrab, DropsExactlyWhatThePluginDrops) {
    SimulatedStream stream("SaperaSimulated;FrameRate=0;Trigger=On;DropEvery=7", CameraOf(64, 64));
    EXPECT_EQ(GrabInOrder(stream, 7000, 7), 6000U);
}

TEST(SimulatedGrab, FollowsTheGeometryFromGrabToGrab) {
    SimulatedStream stream("SaperaSimulated;FrameRate=0;Frames=1", CameraOf(64, 64));
    for (const auto& [width, height, format, size, bytes] :
         {std::tuple{320, 240, 0x01080001, 8, 1}, std::tuple{100, 50, 0x01100005, 16, 2},
          std::tuple{33, 7, 0x02180014, 24, 3}}) {
        stream.Device().Set("Width", width);
        stream.Device().Set("Height", height);
        stream.Device().Set("PixelFormat", format);
        stream.Device().Set("PixelSize", size);
        EXPECT_EQ(stream.PayloadSize(), static_cast<std::uint64_t>(width * height * bytes));
        stream.AddBuffers(1);
        stream->PrepareGrab();
        stream->QueueBuffer(stream.handles.back());
        const GrabResult result = stream.Next();
        EXPECT_EQ(result.width, width);
        EXPECT_EQ(result.height, height);
        EXPECT_EQ(result.pixelType, format);
        EXPECT_EQ(SimulatedStream::NumberOf(result), 0U);
        stream->FinishGrab();
    }
}

TEST(SimulatedGrab, RunsAtItsRate) {
    SimulatedStream stream("SaperaSimulated;FrameRate=1000;FirstTag=5", CameraOf(64, 64));
    stream.AddBuffers(20);
    stream->PrepareGrab();
    stream.QueueAll();
    auto tag = stream.Next().frameTag;
    EXPECT_EQ(tag, 5U);
    for (int i = 1; i < 20; ++i) {
        const auto next = stream.Next().frameTag;
        EXPECT_GT(next, tag);  // the grab began with the first buffer: frames may have found no other yet
        tag = next;
    }
    stream->FinishGrab();
}

TEST(SimulatedGrab, SpeaksForItsFailures) {
    SimulatedStream stream("SaperaSimulated;FailStart=No signal on the cable", CameraOf(64, 64));
    stream.AddBuffers(1);
    stream->PrepareGrab();
    EXPECT_EQ(MessageOf<GenICam::RuntimeException>([&] { stream->QueueBuffer(stream.handles[0]); }),
              "No signal on the cable");
    EXPECT_THROW(SimulatedStream("SaperaSimulated;FailInit=x"), GenICam::RuntimeException);
}

TEST(SimulatedGrab, ShowsClockAndPower) {
    SimulatedStream stream("SaperaSimulated;PixelClock=40000000;PoCL=Off");
    GenApi::INodeMap* const nodes = stream->GetNodeMap();
    EXPECT_EQ(GenApi::CIntegerPtr(nodes->GetNode("PixelClockDetected"))->GetValue(), 40000000);
    const GenApi::CBooleanPtr power = nodes->GetNode("PoCLState");
    EXPECT_FALSE(power->GetValue());
    power->SetValue(true);
    EXPECT_TRUE(power->GetValue(false, true));
}

TEST(SimulatedGrab, OutlivesThePulledCable) {
    SimulatedStream stream("SaperaSimulated;FrameRate=0;Trigger=On",
                           CameraXml().With("OffsetX", CameraXml::Register("OffsetX", 0x100)));
    stream.AddBuffers(2);
    stream->PrepareGrab();
    stream.QueueAll();
    stream.Trigger(1);
    EXPECT_EQ(stream.Next().status, Grabbed);
    stream.Device().Memory().isGone = true;
    stream.Trigger(2);
    const GrabResult result = stream.Next();
    EXPECT_EQ(result.status, GrabFailed);
    EXPECT_EQ(result.errorDescription, "Failed to retrieve result specific data from device nodemap.");
    stream->FinishGrab();
    stream->Close();
}

}  // namespace
