/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Ending a grab that runs at full speed, at any moment
 */

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "tests/integration/GrabsImages.h"
#include "tests/support/RunningApplication.h"

namespace integration {
namespace {

/// How many grabs or devices are ended: what VANTO_TEST_ROUNDS says, if it is set. Each takes a new thread, and a
/// device its time on the serial line.
int Rounds() {
    constexpr int kAll = 1000;
    const char* const text = std::getenv("VANTO_TEST_ROUNDS");
    const int rounds = text != nullptr ? std::atoi(text) : kAll;
    EXPECT_GT(rounds, 0) << "VANTO_TEST_ROUNDS is '" << text << "'";
    std::cout << rounds << " of " << kAll << " rounds; VANTO_TEST_ROUNDS sets another number\n";
    return rounds;
}

class RunningGrab : public GrabsImages {
protected:
    RunningGrab() {
        Open("Trigger=Off");
        Set("Width", "64");
        Set("Height", "64");
    }

    /// Lets a time pass that differs from round to round, without giving the processor away.
    static void LetRun(int round) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(round * 37 % 101 * 2);
        while (std::chrono::steady_clock::now() < end) {
        }
    }
    void ExpectAFrame() {
        for (;;) {
            const std::optional<GrabResult> result = Next();
            ASSERT_TRUE(result) << "No frame comes any more";
            if (result->Succeeded()) {
                EXPECT_TRUE(NumberOf(*result));
                return;
            }
            m_grabber->QueueBuffer(result->handle);
        }
    }

    const int m_rounds = Rounds();
};

TEST_F(RunningGrab, CanBeFinished) {
    Begin();
    for (int round = 0; round < m_rounds; ++round) {
        {
            const test_support::RunningApplication application(*m_grabber);
            LetRun(round);
            m_grabber->FinishGrab();
        }
        for (GrabResult left; m_grabber->RetrieveResult(left);) {
        }
        try {
            m_grabber->PrepareGrab();
        } catch (const GenICam::LogicalErrorException&) {
            // The last result has made the grab count as prepared.
        }
        for (const StreamBufferHandle handle : m_handles)
            m_grabber->QueueBuffer(handle);
    }
    ExpectAFrame();
    m_grabber->FinishGrab();
}

TEST_F(RunningGrab, CanBeCancelled) {
    Begin();
    {
        const test_support::RunningApplication application(*m_grabber);
        for (int round = 0; round < m_rounds; ++round) {
            LetRun(round);
            m_grabber->CancelGrab();
        }
    }
    for (GrabResult left; m_grabber->RetrieveResult(left);) {
    }
    for (const StreamBufferHandle handle : m_handles)
        m_grabber->QueueBuffer(handle);
    ExpectAFrame();
    m_grabber->FinishGrab();
}

TEST_F(RunningGrab, CanBeClosedAndItsBuffersFreed) {
    for (int round = 0; round < m_rounds; ++round) {
        Begin();
        {
            const test_support::RunningApplication application(*m_grabber);
            LetRun(round);
            m_grabber->Close();
        }
        ForgetBuffers();
        m_grabber->Open();
    }
}

// The thread that finds the camera gone has its node map locked. Frames come meanwhile, and none of them may keep the
// grab from being ended there.
TEST_F(RunningGrab, CanBeEndedByWhoFindsTheCameraGone) {
    Vanto::RegisterRemovalCallback(*m_device, [grabber = m_grabber](Vanto::IVantoDevice*) {
        for (int frames = 0; frames < 10; ++frames)
            EXPECT_TRUE(grabber->GetWaitObject().Wait(10000));
        grabber->CancelGrab();
        grabber->Close();
    });
    Begin();
    const test_support::RunningApplication application(*m_grabber);
    simulator.Unplug("cam0");
    EXPECT_THROW(Set("ExposureTime", "500"), GenICam::GenericException);
    EXPECT_FALSE(m_grabber->IsOpen());
}

TEST_F(RunningGrab, CanBeDestroyedWithItsDevice) {
    for (int round = 0; round < m_rounds; ++round) {
        Begin();
        LetRun(round);
        Destroy();
        Create();
    }
    Begin();
    ExpectAFrame();
    m_grabber->FinishGrab();
}

}  // namespace
}  // namespace integration
