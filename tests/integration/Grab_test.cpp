/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Images of cameras on real serial lines, through the frame-grabber plug-in that the factory's root holds
 */

#include <algorithm>
#include <thread>

#include "tests/integration/GrabsImages.h"
#include "tests/support/WaitUntil.h"

namespace integration {
namespace {

// Sanitizers and builds without optimisation take a part of the long run.
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
constexpr std::uint64_t kManyFrames = 10000;
#else
constexpr std::uint64_t kManyFrames = 300;
#endif
constexpr const char* kLocked[] = {"ClTapGeometry", "PixelFormat",       "Width",
                                   "Height",        "BinningHorizontal", "BinningVertical"};

TEST_F(GrabsImages, WithoutLosingAByte) {
    Open("");
    Set("Width", "1024");
    Set("Height", "1024");
    ASSERT_EQ(StreamValue("PayloadSize"), 1 << 20);
    Begin();
    Trigger(kBuffers);
    for (std::uint64_t number = 0; number < kManyFrames; ++number) {
        const std::optional<GrabResult> result = Next();
        ASSERT_TRUE(result) << "frame " << number << " does not come";
        ASSERT_EQ(result->payloadSize, 1U << 20);
        ASSERT_EQ(result->frameTag, number);
        ASSERT_EQ(NumberOf(*result), number);
        m_grabber->QueueBuffer(result->handle);
        Trigger(number + 1 + kBuffers);
    }
    End();
}

TEST_F(GrabsImages, AndKnowsWhichWereDropped) {
    constexpr std::uint64_t kEvery = 7;
    constexpr std::uint64_t kFrames = 7 * (kManyFrames / 10) - 1;  // the last one is delivered
    Open("DropEvery=7");
    Set("Width", "64");
    Set("Height", "64");
    Begin();
    Trigger(kBuffers);
    std::uint64_t next = 0;
    std::uint64_t dropped = 0;
    while (next < kFrames) {
        const std::optional<GrabResult> result = Next();
        ASSERT_TRUE(result) << "behind frame " << next;
        const std::optional<std::uint64_t> number = NumberOf(*result);
        ASSERT_EQ(number, result->frameTag);
        ASSERT_GE(*number, next);
        dropped += *number - next;
        next = *number + 1;
        m_grabber->QueueBuffer(result->handle);
        // No frame comes without a free buffer: only the plug-in drops any.
        Trigger(std::min(next + kBuffers, kFrames));
    }
    EXPECT_EQ(next, kFrames);
    EXPECT_EQ(dropped, kFrames / kEvery);
    EXPECT_EQ(m_log.CountText("Buffer underrun*!"), 0U);
    End();
}

TEST_F(GrabsImages, OfTheSizeThatTheCameraHas) {
    Open("", "H4096");
    for (const auto& [width, height, format, type, bytes] :
         {std::tuple{"320", "240", "Mono8", Vanto::PixelType_Mono8, 1},
          std::tuple{"96", "48", "BayerRG12", Vanto::PixelType_BayerRG12, 2},
          std::tuple{"64", "16", "RGB8", Vanto::PixelType_RGB8, 3}}) {
        Set("PixelFormat", format);
        Set("Width", width);
        Set("Height", height);
        EXPECT_EQ(StreamValue("PayloadSize"), std::stoi(width) * std::stoi(height) * bytes);
        Begin();
        Trigger(1);
        const std::optional<GrabResult> result = Next();
        ASSERT_TRUE(result);
        EXPECT_EQ(result->GetWidth(), std::stoi(width));
        EXPECT_EQ(result->GetHeight(), std::stoi(height));
        EXPECT_EQ(result->GetPixelType(), type);
        EXPECT_EQ(result->payloadSize, static_cast<std::uint64_t>(StreamValue("PayloadSize")));
        EXPECT_EQ(NumberOf(*result), 0U);
        End();
    }
}

TEST_F(GrabsImages, AndLocksWhatTheirSizeDependsOn) {
    Open("");
    std::vector<std::string> values;
    for (const char* name : kLocked)
        values.push_back(GenApi::CValuePtr(Node(name))->ToString().str());
    Begin();
    for (std::size_t i = 0; i < std::size(kLocked); ++i)
        EXPECT_THROW(Set(kLocked[i], values[i]), GenICam::AccessException) << kLocked[i];
    Set("ExposureTime", "500");
    End();
    for (std::size_t i = 0; i < std::size(kLocked); ++i)
        EXPECT_NO_THROW(Set(kLocked[i], values[i])) << kLocked[i];
}

TEST_F(GrabsImages, WhileTheSerialCableIsPulled) {
    Open("");
    Set("Width", "64");
    Set("Height", "64");
    m_removals.Register(*m_device);
    Begin();
    Trigger(1);
    ASSERT_TRUE(Next());
    simulator.Unplug("cam0");
    EXPECT_THROW(Set("ExposureTime", "500"), GenICam::GenericException);
    EXPECT_EQ(m_removals.Get(), 1);
    // The images have a cable of their own.
    Trigger(2);
    const std::optional<GrabResult> result = Next();
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->Succeeded() || result->Status() == Vanto::GrabFailed);
    if (result->Succeeded()) {
        EXPECT_EQ(NumberOf(*result), 1U);
    }
    m_grabber->CancelGrab();
    m_grabber->Close();
}

// Reading what belongs to a frame finds the camera gone, on the frame grabber's own thread, in a delivery.
TEST_F(GrabsImages, UntilTheApplicationEndsThemBecauseTheCameraIsGone) {
    Open("");
    Set("Width", "64");
    Set("Height", "64");
    m_removals.Register(*m_device);
    Vanto::RegisterRemovalCallback(*m_device, [grabber = m_grabber](Vanto::IVantoDevice*) {
        grabber->CancelGrab();
        grabber->Close();
    });
    Begin();
    Trigger(1);
    ASSERT_TRUE(Next());
    simulator.Unplug("cam0");
    Node("OffsetX")->InvalidateNode();
    Trigger(2);
    EXPECT_TRUE(m_removals.Wait(std::chrono::milliseconds(kPatience)));
    EXPECT_TRUE(test_support::WaitUntil([&] { return !m_grabber->IsOpen(); }));
    EXPECT_EQ(m_removals.Get(), 1);
}

}  // namespace
}  // namespace integration
