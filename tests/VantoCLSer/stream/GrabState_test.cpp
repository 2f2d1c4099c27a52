/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where a grab stands, without a stream grabber
 */

#include "VantoCLSer/stream/GrabState.h"

#include <gtest/gtest.h>

#include <thread>

#include "Base/GCException.h"
#include "tests/support/WaitUntil.h"

namespace {

using Vanto::CGrabState;
using namespace std::chrono_literals;

TEST(GrabState, BeginsClosed) {
    const CGrabState state;
    EXPECT_TRUE(state.Is(CGrabState::kClosed));
    EXPECT_NO_THROW(state.CheckClosed("Open"));
    EXPECT_FALSE(state.MayStart());
}

TEST(GrabState, NamesStateAndOperationOfWhatItRefuses) {
    CGrabState state;
    state.Set(CGrabState::kOpen);
    try {
        state.Check({CGrabState::kPrepared, CGrabState::kReserved}, "CancelGrab");
        FAIL() << "not refused";
    } catch (const GenICam::LogicalErrorException& error) {
        EXPECT_STREQ(error.GetDescription(), "Invalid streamgrabber state (1) in CancelGrab");
    }
    EXPECT_THROW(state.CheckClosed("Open"), GenICam::LogicalErrorException);
}

TEST(GrabState, StartsOncePrepared) {
    CGrabState state;
    state.Set(CGrabState::kPrepared);
    EXPECT_TRUE(state.MayStart());
    state.NoteStart();
    EXPECT_FALSE(state.MayStart());
}

TEST(GrabState, DoesNotStartWhileSomebodyStops) {
    CGrabState state;
    state.Set(CGrabState::kPrepared);
    state.BeginStop();
    state.BeginStop();
    state.EndStop();
    EXPECT_FALSE(state.MayStart()) << "one of two still stops";
    state.EndStop();
    EXPECT_TRUE(state.MayStart());
}

TEST(GrabState, CountsEveryStop) {
    CGrabState state;
    const std::uint64_t before = state.CountStops();
    state.BeginStop();
    state.EndStop();
    state.BeginStop();
    EXPECT_EQ(state.CountStops(), before + 2);
}

TEST(GrabState, TakesNoBufferWhileTheGrabIsFinished) {
    CGrabState state;
    state.Set(CGrabState::kPrepared);
    EXPECT_NO_THROW(state.CheckQueueing());
    state.BeginFinish();
    EXPECT_THROW(state.CheckQueueing(), GenICam::LogicalErrorException);
    EXPECT_FALSE(state.MayStart());
    state.AbandonFinish();
    EXPECT_NO_THROW(state.CheckQueueing());
}

TEST(GrabState, IsOpenAfterItsEnd) {
    CGrabState state;
    state.Set(CGrabState::kPrepared);
    state.BeginFinish();
    state.EndFinish();
    EXPECT_TRUE(state.Is(CGrabState::kOpen));
    EXPECT_FALSE(state.MayStart());
}

TEST(GrabState, IsNotOverdueBeforeNorAfterAStop) {
    CGrabState state;
    EXPECT_FALSE(state.IsStopOverdue());
    state.BeginStop();
    state.EndStop();
    EXPECT_FALSE(state.IsStopOverdue());
}

TEST(GrabState, IsOverdueUntilTheLastOneWhoStopsHasEnded) {
    CGrabState state;
    state.BeginStop();
    EXPECT_FALSE(state.IsStopOverdue());
    ASSERT_TRUE(test_support::WaitUntil([&] { return state.IsStopOverdue(); }));
    state.BeginStop();
    EXPECT_TRUE(state.IsStopOverdue()) << "it counts from the first one";
    state.EndStop();
    EXPECT_TRUE(state.IsStopOverdue());
    state.EndStop();
    EXPECT_FALSE(state.IsStopOverdue());
}

TEST(GrabState, WaitsForTheLastOneWhoStops) {
    CGrabState state;
    boost::recursive_mutex mutex;
    CGrabState::Lock lock(mutex);
    state.BeginStop();
    bool hasEnded = false;  // guarded by the mutex, which the wait gives back
    std::thread stopper([&] {
        const CGrabState::Lock own(mutex);
        hasEnded = true;
        state.EndStop();
    });
    state.WaitUntilStopped(lock, 60s);
    EXPECT_TRUE(hasEnded);
    lock.unlock();
    stopper.join();
}

TEST(GrabState, GivesUpWaitingForAStop) {
    CGrabState state;
    boost::recursive_mutex mutex;
    CGrabState::Lock lock(mutex);
    state.BeginStop();
    state.WaitUntilStopped(lock, 1ms);
    EXPECT_TRUE(lock.owns_lock());
    EXPECT_FALSE(state.MayStart());
}

}  // namespace
