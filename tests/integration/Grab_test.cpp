/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Images of cameras on real serial lines, through the frame-grabber plug-in that the factory's root holds
 */

#include <algorithm>
#include <memory>
#include <optional>
#include <thread>

#include "FrameMark.h"
#include "tests/integration/Machine.h"
#include "tests/integration/Removals.h"
#include "vanto/StreamGrabber.h"

namespace integration {
namespace {

using Vanto::GrabResult;
using Vanto::StreamBufferHandle;

// Sanitizers and builds without optimisation take a part of the long run.
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
constexpr std::uint64_t kManyFrames = 10000;
#else
constexpr std::uint64_t kManyFrames = 300;
#endif
constexpr std::size_t kBuffers = 8;
constexpr std::uint32_t kPatience = 60000;  // milliseconds
constexpr const char* kLocked[] = {"ClTapGeometry", "PixelFormat",       "Width",
                                   "Height",        "BinningHorizontal", "BinningVertical"};

/// A camera and its stream grabber, both open; frames come when they are asked for.
class GrabsImages : public Machine {
protected:
    ~GrabsImages() override {
        if (m_device == nullptr)
            return;
        if (m_grabber != nullptr && m_grabber->IsOpen())
            m_grabber->Close();
        CTlFactory::GetInstance().DestroyDevice(m_device);
    }

    void Open(const std::string& parameters, const char* model = "H2048") {
        Add("cam0", Camera("21", model),
            "<Manufacturer>Marlow</Manufacturer><DeviceSpecificString>SaperaSimulated;FrameRate=0;Trigger=On;" +
                parameters + "</DeviceSpecificString>");
        m_device = CTlFactory::GetInstance().CreateDevice(Partial("21"));
        m_device->Open();
        m_grabber = m_device->GetStreamGrabber(0);
        if (m_grabber == nullptr)
            throw RUNTIME_EXCEPTION("There is no stream grabber");
        m_grabber->Open();
    }
    GenApi::INode* Node(const char* name) const { return m_device->GetNodeMap()->GetNode(name); }
    void Set(const char* name, const std::string& value) const {
        const GenApi::CValuePtr node = Node(name);
        node->FromString(value.c_str());
    }
    std::int64_t StreamValue(const char* name) const {
        const GenApi::CIntegerPtr node = m_grabber->GetNodeMap()->GetNode(name);
        return node->GetValue();
    }
    void Trigger(std::uint64_t frames) const {
        const GenApi::CIntegerPtr node = m_grabber->GetNodeMap()->GetNode("DebugData1");
        node->SetValue(static_cast<std::int64_t>(frames));
    }

    void Begin() {
        const auto size = static_cast<std::size_t>(StreamValue("PayloadSize"));
        for (std::size_t i = 0; i < kBuffers; ++i) {
            m_memory.push_back(std::make_unique<std::uint8_t[]>(size));
            m_handles.push_back(m_grabber->RegisterBuffer(m_memory.back().get(), size));
        }
        Trigger(0);
        m_grabber->PrepareGrab();
        for (const StreamBufferHandle handle : m_handles)
            m_grabber->QueueBuffer(handle);
    }
    void End() {
        m_grabber->FinishGrab();
        for (GrabResult left; m_grabber->RetrieveResult(left);) {
        }
        for (const StreamBufferHandle handle : m_handles)
            m_grabber->DeregisterBuffer(handle);
        m_handles.clear();
        m_memory.clear();
        // The last result makes the grab count as prepared.
        m_grabber->Close();
        m_grabber->Open();
    }
    std::optional<GrabResult> Next() {
        GrabResult result;
        while (!m_grabber->RetrieveResult(result))
            if (!m_grabber->GetWaitObject().Wait(kPatience))
                return std::nullopt;
        return result;
    }
    static std::optional<std::uint64_t> NumberOf(const GrabResult& result) {
        return grabber::ReadFrameMark({static_cast<const std::uint8_t*>(result.buffer), result.payloadSize});
    }

    Removals m_removals;
    Vanto::IVantoDevice* m_device = nullptr;
    Vanto::IStreamGrabber* m_grabber = nullptr;
    std::vector<StreamBufferHandle> m_handles;

private:
    std::vector<std::unique_ptr<std::uint8_t[]>> m_memory;
};

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
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kPatience);
    while (m_grabber->IsOpen() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_FALSE(m_grabber->IsOpen());
    EXPECT_EQ(m_removals.Get(), 1);
}

}  // namespace
}  // namespace integration
