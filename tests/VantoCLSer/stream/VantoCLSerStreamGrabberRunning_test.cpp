/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Ending an acquisition that runs at full speed, at any moment
 */

#include <atomic>
#include <thread>

#include "SimulatedStream.h"
#include "tests/support/RunningApplication.h"

namespace {

using namespace stream_test;
using namespace Vanto;

constexpr int kRounds = 1000;
constexpr char kFullSpeed[] = "SaperaSimulated;FrameRate=0";

/// Takes a time that differs from round to round, without giving the processor away.
void LetRun(int round) {
    std::atomic<int> turns{(round * 37) % 101 * 200};
    while (--turns > 0) {
    }
}

/// Ends the grab of another thread again and again.
class RunningAcquisition : public testing::Test {
protected:
    void Begin() {
        m_stream.AddBuffers(3);
        m_stream->PrepareGrab();
        m_stream.QueueAll();
    }
    void Drain() {
        GrabResult result;
        while (m_stream->RetrieveResult(result)) {
        }
    }

    SimulatedStream m_stream{kFullSpeed};
};

TEST_F(RunningAcquisition, CanBeFinished) {
    Begin();
    for (int round = 0; round < kRounds; ++round) {
        {
            const test_support::RunningApplication application(m_stream.Grabber());
            LetRun(round);
            m_stream->FinishGrab();
        }
        Drain();  // which makes the grab count as prepared, if there was anything left
        try {
            m_stream->PrepareGrab();
        } catch (const GenICam::LogicalErrorException&) {
        }
        for (const StreamBufferHandle handle : m_stream.handles)
            m_stream->QueueBuffer(handle);
    }
    m_stream->FinishGrab();
}

TEST_F(RunningAcquisition, CanBeCancelled) {
    Begin();
    const test_support::RunningApplication application(m_stream.Grabber());
    for (int round = 0; round < kRounds; ++round) {
        LetRun(round);
        m_stream->CancelGrab();
        m_stream.QueueAll();
    }
    m_stream->FinishGrab();
}

TEST_F(RunningAcquisition, CanBeClosedAndItsBuffersFreed) {
    for (int round = 0; round < kRounds; ++round) {
        Begin();
        {
            const test_support::RunningApplication application(m_stream.Grabber());
            LetRun(round);
            m_stream->Close();
        }
        m_stream.DropBuffers();
        m_stream->Open();
    }
}

TEST(RunningAcquisitionOfDevice, CanBeDestroyed) {
    const scripted::ScopedVariable root("VANTO_ROOT", TreeOf(kSimulated));
    OpenDevice device(CameraXml(), kFullSpeed);
    for (int round = 0; round < kRounds; ++round) {
        std::vector<std::uint8_t> memory(32);
        CVantoCLSerStreamGrabber grabber(kFullSpeed, device.Get());
        grabber.Initialize();
        grabber.Open();
        grabber.PrepareGrab();
        grabber.QueueBuffer(grabber.RegisterBuffer(memory.data(), memory.size()), nullptr);
        LetRun(round);
    }
}

TEST_F(RunningAcquisition, DoesNotBlockNodeMaps) {
    Begin();
    const test_support::RunningApplication application(m_stream.Grabber());
    std::atomic<bool> stop{false};
    std::thread nodes([&] {
        GenApi::INodeMap* const own = m_stream->GetNodeMap();
        for (int round = 0; !stop; ++round) {
            m_stream.Device().Set("OffsetX", round % 16);
            GenApi::CIntegerPtr(own->GetNode("PixelClockDetected"))->GetValue(false, true);
            GenApi::CIntegerPtr(own->GetNode("Width"))->SetValue(8 + round % 3);
        }
    });
    for (int round = 0; round < kRounds / 10; ++round) {
        m_stream->CancelGrab();
        m_stream.QueueAll();
    }
    stop = true;
    nodes.join();
    m_stream->FinishGrab();
}

}  // namespace
