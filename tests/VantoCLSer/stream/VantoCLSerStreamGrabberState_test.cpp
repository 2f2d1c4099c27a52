/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The states of a stream grabber
 */

#include <future>
#include <stdexcept>

#include "StreamGrabberStateFixture.h"
#include "StreamTest.h"

namespace {

using namespace stream_test;
using namespace Vanto;
using GenICam::LogicalErrorException;
using GenICam::RuntimeException;
using testing::ElementsAre;

std::string StateError(int state, const std::string& operation) {
    return "Invalid streamgrabber state (" + std::to_string(state) + ") in " + operation;
}

TEST_F(StreamGrabberState, OpensAnOpenDevice) {
    Close();
    EXPECT_FALSE(m_grabber->IsOpen());
    m_log->Clear();
    m_grabber->Open();
    EXPECT_TRUE(m_grabber->IsOpen());
    EXPECT_THAT(TextsOf(tracelog::kDebug), ElementsAre("Opening StreamGrabber", "StreamGrabber opened successfully"));
}

TEST_F(StreamGrabberState, OpensOnce) {
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->Open(); }), "Invalid stream grabber state (1) in Open");
    m_grabber->PrepareGrab();
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->Open(); }), "Invalid stream grabber state (2) in Open");
}

TEST_F(StreamGrabberState, LooksAtItsStateBeforeItOpens) {
    m_device.Close();
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->Open(); }), "Invalid stream grabber state (1) in Open");
    EXPECT_EQ(m_log->CountText("Opening StreamGrabber"), 0U);
}

TEST_F(StreamGrabberState, SaysThatItOpensBeforeItFails) {
    Close();
    m_device.Close();
    EXPECT_THROW(m_grabber->Open(), RuntimeException);
    EXPECT_THAT(TextsOf(tracelog::kDebug), ElementsAre("Closing StreamGrabber", "Opening StreamGrabber"));
}

TEST_F(StreamGrabberState, DoesNotOpenOnAClosedDevice) {
    Close();
    m_device.Close();
    const std::string text = "Device not open when opening stream grabber.";
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->Open(); }), text);
    EXPECT_THAT(TextsOf(tracelog::kError), ElementsAre(text));
    EXPECT_FALSE(m_grabber->IsOpen());
}

TEST_F(StreamGrabberState, ClosedRefusesEverythingButOpenAndClose) {
    Close();
    char buffer = 0;
    GrabResult result;
    const std::pair<const char*, std::function<void()>> operations[] = {
        {"RegisterBuffer", [&] { m_grabber->RegisterBuffer(&buffer, 1); }},
        {"DeregisterBuffer", [&] { m_grabber->DeregisterBuffer(1); }},
        {"PrepareGrab", [&] { m_grabber->PrepareGrab(); }},
        {"FinishGrab", [&] { m_grabber->FinishGrab(); }},
        {"QueueBuffer", [&] { m_grabber->QueueBuffer(1, nullptr); }},
        {"CancelGrab", [&] { m_grabber->CancelGrab(); }},
        {"RetrieveResult", [&] { m_grabber->RetrieveResult(result); }}};
    for (const auto& [name, operation] : operations)
        EXPECT_EQ(MessageOf<LogicalErrorException>(operation), StateError(0, name));
}

TEST_F(StreamGrabberState, RefusalsAreNotLogged) {
    m_log->Clear();
    EXPECT_THROW(m_grabber->Open(), LogicalErrorException);
    EXPECT_THROW(m_grabber->FinishGrab(), LogicalErrorException);
    EXPECT_THROW(m_grabber->DeregisterBuffer(1), RuntimeException);
    EXPECT_THROW(m_grabber->RegisterBuffer(nullptr, 1), RuntimeException);
    EXPECT_TRUE(m_log->GetMessages().empty());
}

TEST_F(StreamGrabberState, RefusalsLeaveTheState) {
    EXPECT_THROW(m_grabber->FinishGrab(), LogicalErrorException);
    EXPECT_THROW(m_grabber->CancelGrab(), LogicalErrorException);
    EXPECT_STREQ(m_plugin->calls, "Create Init ");  // not stopped
    m_grabber->PrepareGrab();
    EXPECT_THROW(m_grabber->PrepareGrab(), LogicalErrorException);
    m_grabber->CancelGrab();
}

TEST_F(StreamGrabberState, OpenRefusesWhatNeedsAGrab) {
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->FinishGrab(); }), StateError(1, "FinishGrab"));
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->QueueBuffer(1, nullptr); }),
              StateError(1, "QueueBuffer"));
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->CancelGrab(); }), StateError(1, "CancelGrab"));
}

TEST_F(StreamGrabberState, PreparedRefusesToPrepare) {
    m_grabber->PrepareGrab();
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->PrepareGrab(); }), StateError(2, "PrepareGrab"));
}

TEST_F(StreamGrabberState, PreparingDoesNotCallThePlugin) {
    m_grabber->PrepareGrab();
    EXPECT_STREQ(m_plugin->calls, "Create Init ");
}

TEST_F(StreamGrabberState, TheFirstQueuedBufferStartsThePlugin) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab ");
}

TEST_F(StreamGrabberState, ThePluginIsStartedUnderTheLock) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->PrepareGrab();
    struct Context {
        CVantoCLSerStreamGrabber* grabber;
        std::future<bool> isOpen;
    } context{m_grabber.get(), {}};
    m_plugin->hookContext = &context;
    m_plugin->onStart = [](void* pointer) {
        auto& self = *static_cast<Context*>(pointer);
        self.isOpen = std::async(std::launch::async, [&self] { return self.grabber->IsOpen(); });
        EXPECT_EQ(self.isOpen.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    };
    m_grabber->QueueBuffer(handle, nullptr);
    EXPECT_TRUE(context.isOpen.get());
}

TEST_F(StreamGrabberState, ThePluginMayDeliverWhileItStarts) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->PrepareGrab();
    m_plugin->hookContext = this;
    m_plugin->onStart = [](void* pointer) {
        auto& self = *static_cast<StreamGrabberState*>(pointer);
        self.m_plugin.Deliver(self.Frame(3));
    };
    m_grabber->QueueBuffer(handle, nullptr);
    EXPECT_EQ(Retrieve().frameTag, 3U);
}

TEST_F(StreamGrabberState, FinishingStopsThePluginTwice) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->FinishGrab();
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab StopGrab StopGrab ");
}

TEST_F(StreamGrabberState, FinishingLeadsBackToOpen) {
    m_grabber->PrepareGrab();
    m_grabber->FinishGrab();
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->CancelGrab(); }), StateError(1, "CancelGrab"));
    m_grabber->PrepareGrab();
}

TEST_F(StreamGrabberState, CancellingKeepsTheGrabPrepared) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    m_grabber->CancelGrab();
    m_grabber->QueueBuffer(handle, nullptr);
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab StopGrab StartGrab ");
}

TEST_F(StreamGrabberState, DrainingAfterFinishMakesItPreparedAgain) {
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->FinishGrab();
    Retrieve();
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->CancelGrab(); }), StateError(1, "CancelGrab"));
    Retrieve();
    m_grabber->CancelGrab();  // state 2
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->PrepareGrab(); }), StateError(2, "PrepareGrab"));
}

TEST_F(StreamGrabberState, DrainingAfterFinishLetsTheNextBufferStartThePlugin) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    m_grabber->FinishGrab();
    Retrieve();
    m_grabber->QueueBuffer(handle, nullptr);
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab StopGrab StopGrab StartGrab ");
}

TEST_F(StreamGrabberState, FinishingLeavesResultsBeforeCancelledBuffers) {
    m_grabber->PrepareGrab();
    const StreamBufferHandle filled = AddBuffer();
    m_grabber->QueueBuffer(filled, nullptr);
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_plugin.Deliver(Frame());
    m_grabber->FinishGrab();
    const GrabResult first = Retrieve();
    EXPECT_EQ(first.handle, filled);
    EXPECT_EQ(first.status, Grabbed);
    EXPECT_EQ(Retrieve().status, Canceled);
}

TEST_F(StreamGrabberState, CancellingStopsAPluginThatWasNotStarted) {
    m_grabber->PrepareGrab();
    m_grabber->CancelGrab();
    EXPECT_STREQ(m_plugin->calls, "Create Init StopGrab ");
}

TEST_F(StreamGrabberState, AFailingStopEndsTheGrabAllTheSame) {
    m_plugin->stopResult = false;
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->QueueBuffer(handle, nullptr);
    m_grabber->CancelGrab();
    EXPECT_EQ(Retrieve().status, Canceled);
    EXPECT_EQ(m_log->CountText("Failed to stop the grab gracefully ().", tracelog::kWarning), 1U);
    m_grabber->QueueBuffer(handle, nullptr);
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab StopGrab StartGrab ");
    m_grabber->FinishGrab();
    EXPECT_EQ(MessageOf<LogicalErrorException>([&] { m_grabber->CancelGrab(); }), StateError(1, "CancelGrab"));
}

TEST_F(StreamGrabberState, AFailingStopIsOnlyLogged) {
    m_plugin->stopResult = false;
    m_plugin->errorText = "board 5%n stuck";
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(AddBuffer(), nullptr);
    m_grabber->FinishGrab();
    const std::string text = "Failed to stop the grab gracefully (board 5%n stuck).";
    EXPECT_THAT(TextsOf(tracelog::kWarning), ElementsAre(text, text));
}

TEST_F(StreamGrabberState, AFailingStartKeepsTheBufferQueued) {
    m_plugin->startResult = false;
    m_plugin->errorText = "no clock %s";
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddBuffer();
    EXPECT_EQ(MessageOf<RuntimeException>([&] { m_grabber->QueueBuffer(handle, nullptr); }), "no clock %s");
    EXPECT_EQ(m_plugin->textSizes[0], 0U);
    EXPECT_EQ(m_plugin->textSizes[1], 12U);
    m_plugin->startResult = true;
    m_grabber->QueueBuffer(handle, nullptr);  // tries again
    m_grabber->CancelGrab();
    EXPECT_EQ(Retrieve().handle, handle);
    EXPECT_EQ(Retrieve().handle, handle);
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab StartGrab StopGrab ");
}

TEST_F(StreamGrabberState, AFailingStartIsNotLogged) {
    m_plugin->startResult = false;
    m_grabber->PrepareGrab();
    const StreamBufferHandle handle = AddBuffer();
    m_log->Clear();
    EXPECT_THROW(m_grabber->QueueBuffer(handle, nullptr), RuntimeException);
    EXPECT_TRUE(m_log->GetMessages().empty());
}

TEST_F(StreamGrabberState, FinishIgnoresAFailingCancel) {
    m_grabber->PrepareGrab();
    m_plugin->hookContext = m_grabber.get();
    m_plugin->onStop = [](void* grabber) { static_cast<CVantoCLSerStreamGrabber*>(grabber)->Close(); };
    m_grabber->FinishGrab();
    EXPECT_EQ(m_log->CountText("Exception while calling CancelGrab from FinishGrab will be ignored (Invalid "
                               "streamgrabber state (0) in CancelGrab).",
                               tracelog::kWarning),
              1U);
    m_plugin->onStop = nullptr;
    EXPECT_TRUE(m_grabber->IsOpen());  // the state is 1 all the same
    EXPECT_EQ(m_device.Value("TLParamsLocked"), 0);
}

/// A stream grabber whose CancelGrab does what a test wants.
class CancellingGrabber : public CVantoCLSerStreamGrabber {
public:
    using CVantoCLSerStreamGrabber::CVantoCLSerStreamGrabber;
    void CancelGrab() override { onCancel(); }
    std::function<void()> onCancel;
};

class FinishingByCancel : public StreamGrabberState {
protected:
    FinishingByCancel() {
        m_grabber->Close();
        m_grabber.reset();  // a camera has one
        m_log->Clear();
        m_cancelling->Initialize();
        m_cancelling->Open();
        m_cancelling->PrepareGrab();
    }
    std::unique_ptr<CancellingGrabber> m_cancelling = std::make_unique<CancellingGrabber>("Sapera", m_device.Get());
};

TEST_F(FinishingByCancel, CallsTheVirtualOperationOnce) {
    int calls = 0;
    m_cancelling->onCancel = [&] { ++calls; };
    m_cancelling->FinishGrab();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(CountLevel(*m_log, tracelog::kWarning), 0U);
}

TEST_F(FinishingByCancel, IgnoresAnyGenICamException) {
    m_cancelling->onCancel = [] { throw RUNTIME_EXCEPTION("of %s board"); };
    m_cancelling->FinishGrab();
    EXPECT_THAT(TextsOf(tracelog::kWarning),
                ElementsAre("Exception while calling CancelGrab from FinishGrab will be ignored (of %s board)."));
    m_cancelling->PrepareGrab();  // the state is 1
}

TEST_F(FinishingByCancel, StaysPreparedAfterAnotherException) {
    m_cancelling->onCancel = [] { throw std::runtime_error("of another kind"); };
    EXPECT_THROW(m_cancelling->FinishGrab(), std::runtime_error);
    char buffer = 0;
    m_cancelling->QueueBuffer(m_cancelling->RegisterBuffer(&buffer, 1), nullptr);
    m_cancelling->onCancel = [] {};
    m_cancelling->FinishGrab();
    m_cancelling->PrepareGrab();
}

TEST_F(StreamGrabberState, NobodyStartsThePluginAgainWhileTheGrabIsFinished) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->PrepareGrab();
    m_grabber->QueueBuffer(handle, nullptr);
    struct Context {
        CVantoCLSerStreamGrabber* grabber;
        StreamBufferHandle handle;
        int stops;
        std::string error;
    } context{m_grabber.get(), handle, 0, ""};
    m_plugin->hookContext = &context;
    m_plugin->onStop = [](void* pointer) {
        auto& self = *static_cast<Context*>(pointer);
        if (++self.stops == 2)
            self.error = MessageOf<LogicalErrorException>([&] { self.grabber->QueueBuffer(self.handle, nullptr); });
    };
    m_grabber->FinishGrab();
    EXPECT_EQ(context.error, StateError(1, "QueueBuffer"));
    EXPECT_STREQ(m_plugin->calls, "Create Init StartGrab StopGrab StopGrab ");
}

TEST_F(StreamGrabberState, ABufferQueuedWhileThePluginStopsIsCancelledToo) {
    const StreamBufferHandle handle = AddBuffer();
    m_grabber->PrepareGrab();
    struct Context {
        CVantoCLSerStreamGrabber* grabber;
        StreamBufferHandle handle;
        bool done;
    } context{m_grabber.get(), handle, false};
    m_plugin->hookContext = &context;
    m_plugin->onStop = [](void* pointer) {
        auto& self = *static_cast<Context*>(pointer);
        if (!std::exchange(self.done, true))
            self.grabber->QueueBuffer(self.handle, nullptr);
    };
    m_grabber->FinishGrab();
    EXPECT_STREQ(m_plugin->calls, "Create Init StopGrab StopGrab ");  // not started while it is being stopped
    EXPECT_EQ(Retrieve().status, Canceled);
}

}  // namespace
