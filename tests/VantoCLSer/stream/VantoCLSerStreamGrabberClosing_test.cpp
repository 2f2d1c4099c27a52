/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How a stream grabber closes, with a warning where something is left
 */

#include "StreamGrabberStateFixture.h"
#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using testing::ElementsAre;

TEST_F(StreamGrabberState, ClosingInOrderSaysNothingElse) {
    Close();
    ASSERT_EQ(m_log->GetMessages().size(), 1U);
    EXPECT_EQ(m_log->CountText("Closing StreamGrabber", tracelog::kDebug), 1U);
}

TEST_F(StreamGrabberState, ClosingWarnsOfTheStateWithTheNumberOfBuffers) {
    AddBuffer();
    AddBuffer();
    AddBuffer();
    m_grabber->PrepareGrab();
    Close();
    EXPECT_THAT(TextsOf(tracelog::kWarning),
                ElementsAre("Invalid streamgrabber state (3) in Close",
                            "Still 3 bufferers registred when calling Close(). Use DeregisterBuffer() to avoid this "
                            "message."));
    EXPECT_STREQ(m_plugin->calls, "Create Init ");  // the plug-in is left alone
}

TEST_F(StreamGrabberState, ClosingTwiceWarns) {
    Close();
    m_log->Clear();
    Close();
    EXPECT_THAT(TextsOf(tracelog::kWarning), ElementsAre("Invalid streamgrabber state (0) in Close"));
}

TEST_F(StreamGrabberState, ClosingWarnsOfUnretrievedResults) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->FinishGrab();
    Close();
    EXPECT_THAT(TextsOf(tracelog::kWarning),
                ElementsAre("Still 2 filled, unretrieved bufferers in queue when calling Close(). Use RetrieveResult() "
                            "to remove them before calling Close() to avoid this message.",
                            "Still 2 bufferers registred when calling Close(). Use DeregisterBuffer() to avoid this "
                            "message."));
    EXPECT_FALSE(IsSignalled());
}

TEST_F(StreamGrabberState, ClosingForgetsUnretrievedResults) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_plugin.Deliver(Frame());
    Close();
    m_grabber->Open();
    GrabResult result;
    EXPECT_FALSE(m_grabber->RetrieveResult(result));
}

TEST_F(StreamGrabberState, APluginThatAClosingLeftRunningIsNotStartedAgain) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    Close();
    m_grabber->Open();
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab ");  // it still runs
}

TEST_F(StreamGrabberState, ClosingWithEmptyBuffersHidesTheFilledOnes) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_plugin.Deliver(Frame());
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    Close();
    EXPECT_THAT(TextsOf(tracelog::kWarning),
                ElementsAre("Invalid streamgrabber state (2) in Close",
                            "Still 1 empty bufferers in queue when calling Close().",
                            "Still 2 bufferers registred when calling Close(). Use DeregisterBuffer() to avoid this "
                            "message."));
}

TEST_F(StreamGrabberState, ClosingForgetsFilledBuffersBesideEmptyOnes) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_plugin.Deliver(Frame());
    Close();
    EXPECT_FALSE(IsSignalled());
    m_grabber->Open();
    GrabResult result;
    EXPECT_FALSE(m_grabber->RetrieveResult(result));
}

TEST_F(StreamGrabberState, QueuedEmptyBuffersSurviveAClose) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    Close();
    m_grabber->Open();
    m_log->Clear();
    m_plugin.Deliver(Frame());
    EXPECT_EQ(m_log->CountFormat("Invalid Bufferhandle %p encountered", tracelog::kError), 1U);
    m_plugin.Deliver(Frame());
    EXPECT_EQ(m_log->CountText("Buffer underrun*!", tracelog::kTrace), 1U);
}

TEST_F(StreamGrabberState, ClosedMayDrainIntoAStateError) {
    Close();
    EXPECT_FALSE(m_plugin.Deliver(Frame()));
    EXPECT_EQ(m_log->CountText("Buffer underrun*!", tracelog::kTrace), 1U);
}

TEST_F(StreamGrabberState, DestructionClosesWithAWarning) {
    m_grabber.reset();
    EXPECT_EQ(m_log->CountText("Stream still open on destruction", tracelog::kWarning), 1U);
    EXPECT_EQ(m_log->CountText("Closing StreamGrabber", tracelog::kDebug), 1U);
    EXPECT_STREQ(m_plugin->calls, "Create Init Shutdown Destroy ");
}

TEST_F(StreamGrabberState, DestructionOfAClosedOneSaysNothing) {
    Close();
    m_log->Clear();
    m_grabber.reset();
    EXPECT_TRUE(m_log->GetMessages().empty());
}

}  // namespace
