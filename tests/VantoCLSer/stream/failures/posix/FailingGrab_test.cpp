/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Each allocation of each operation of a grab fails in turn: one error, nothing is left behind or lost, and the next
 * attempt works
 */

#include <utility>

#include "StreamTest.h"
#include "failing/EachAllocation.h"

namespace {

using namespace stream_test;
using namespace Vanto;

using failing::Step;

/// A shortage of memory in the operations of a stream grabber, for a moment or to their end.
class FailingGrab : public StreamTest, public testing::WithParamInterface<failing::Shortage> {
protected:
    FailingGrab() { m_log.reset(); }

    void Deliver() { EXPECT_FALSE(m_plugin.Deliver(Frame())); }
    void PrepareWithBuffer() {
        m_grabber->PrepareGrab();
        m_grabber->QueueBuffer(AddBuffer(), nullptr);
    }
    // Whatever state the grab is in.
    void End() {
        m_grabber->Close();
        while (GrabIsLocked())
            FinishAnew();
        m_buffers.clear();
    }
    // Buffers that wait for a frame outlive a close; this one's end cancels them.
    void FinishAnew() {
        m_grabber->Open();
        m_grabber->PrepareGrab();
        m_grabber->FinishGrab();
        m_grabber->Close();
    }
    bool GrabIsLocked() { return m_device.Value("TLParamsLocked") != 0; }

    void GoTheWholeWay() {
        if (!m_grabber->IsOpen())
            m_grabber->Open();
        PrepareWithBuffer();
        Deliver();
        EXPECT_EQ(Retrieve().status, Grabbed);
        m_grabber->QueueBuffer(AddBuffer(), nullptr);
        m_grabber->FinishGrab();
        EXPECT_EQ(Retrieve().status, Canceled);
        EXPECT_FALSE(GrabIsLocked());
        EXPECT_EQ(m_device.AccessModeOf("Width"), GenApi::RW);
        m_grabber->Close();
        m_buffers.clear();
        m_grabber->Open();
    }

    void FailEach(const Step& prepare, const Step& operation, const Step& cleanUp) {
        failing::EachAllocation(GetParam(), [this] { GoTheWholeWay(); }).Fail(prepare, operation, cleanUp);
    }

    int CountResults() {
        int count = 0;
        for (GrabResult result; m_grabber->RetrieveResult(result);)
            ++count;
        return count;
    }
};

TEST_P(FailingGrab, OfMakingTheStreamGrabber) {
    auto* const callee = m_plugin->callee;  // the plug-in knows one, the newest
    std::unique_ptr<CVantoCLSerStreamGrabber> other;
    FailEach([] {},
             [&] {
                 other = std::make_unique<CVantoCLSerStreamGrabber>("Sapera", m_device.Get());
                 other->Initialize();
             },
             [&] {
                 other.reset();
                 m_plugin->callee = callee;
             });
}

TEST_P(FailingGrab, OfRegisteringABuffer) {
    StreamBufferHandle handle = 0;
    std::vector<std::uint8_t> memory(32);
    FailEach([] {}, [&] { handle = m_grabber->RegisterBuffer(memory.data(), memory.size()); },
             [&] {
                 if (handle != 0)
                     m_grabber->DeregisterBuffer(std::exchange(handle, 0));
             });
}

TEST_P(FailingGrab, OfPreparing) {
    bool isPrepared = false;
    FailEach([&] { isPrepared = false; },
             [&] {
                 m_grabber->PrepareGrab();
                 isPrepared = true;
             },
             [&] {
                 if (GetParam() == failing::Shortage::kOnce) {
                     EXPECT_EQ(GrabIsLocked(), isPrepared);
                     EXPECT_EQ(m_device.AccessModeOf("Width"), isPrepared ? GenApi::RO : GenApi::RW);
                 }
                 End();
             });
}

TEST_P(FailingGrab, OfQueueing) {
    StreamBufferHandle handle = 0;
    FailEach(
        [&] {
            handle = AddBuffer();
            m_grabber->PrepareGrab();
        },
        [&] { m_grabber->QueueBuffer(handle, nullptr); },
        [&] {
            m_grabber->QueueBuffer(handle, nullptr);  // also where it was queued
            Deliver();
            EXPECT_EQ(Retrieve().handle, handle);
            m_grabber->FinishGrab();
            CountResults();
            End();
        });
}

TEST_P(FailingGrab, OfDeliveries) {
    FailEach([&] { PrepareWithBuffer(); }, [&] { Deliver(); },
             [&] {
                 m_grabber->FinishGrab();
                 EXPECT_EQ(CountResults(), 1);
                 End();
             });
}

TEST_P(FailingGrab, OfFailedDeliveries) {
    FailEach([&] { PrepareWithBuffer(); },
             [&] {
                 PlainFrame frame = Frame();
                 frame.data = nullptr;
                 m_plugin.Deliver(frame);
             },
             [&] {
                 m_grabber->FinishGrab();
                 EXPECT_EQ(CountResults(), 1) << "a buffer is lost";
                 End();
             });
}

TEST_P(FailingGrab, OfRetrieving) {
    FailEach(
        [&] {
            PrepareWithBuffer();
            PlainFrame frame = Frame();
            frame.data = nullptr;  // its result has a text, which is copied
            m_plugin.Deliver(frame);
        },
        [&] {
            GrabResult result;
            m_grabber->RetrieveResult(result);
            m_grabber->QueueBuffer(result.handle, nullptr);
        },
        [&] {
            m_grabber->CancelGrab();
            EXPECT_EQ(CountResults(), 1) << "a result is lost";
            m_grabber->FinishGrab();
            End();
        });
}

TEST_P(FailingGrab, OfCancelling) {
    FailEach([&] { PrepareWithBuffer(); }, [&] { m_grabber->CancelGrab(); },
             [&] {
                 m_grabber->FinishGrab();
                 EXPECT_EQ(CountResults(), 1);
                 End();
             });
}

TEST_P(FailingGrab, OfFinishing) {
    FailEach([&] { PrepareWithBuffer(); }, [&] { m_grabber->FinishGrab(); },
             [&] {
                 EXPECT_EQ(CountResults(), 1);
                 m_grabber->FinishGrab();  // the last result makes the grab count as prepared
                 End();
             });
}

TEST_P(FailingGrab, OfClosing) {
    FailEach([&] { PrepareWithBuffer(); }, [&] { m_grabber->Close(); },
             [&] {
                 EXPECT_FALSE(m_grabber->IsOpen());
                 FinishAnew();
                 End();
             });
}

INSTANTIATE_TEST_SUITE_P(Once, FailingGrab, testing::Values(failing::Shortage::kOnce));
INSTANTIATE_TEST_SUITE_P(FromThenOn, FailingGrab, testing::Values(failing::Shortage::kFromThenOn));

}  // namespace
