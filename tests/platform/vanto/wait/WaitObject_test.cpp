/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/WaitObject.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "Base/GCException.h"

namespace {

using namespace Vanto;

constexpr std::uint32_t kLong = 60000;  // milliseconds; only a hang takes that long

TEST(WaitObject, StaysSignalledUntilReset) {
    const AlertableWaitObject object(true, false);
    EXPECT_FALSE(object.Wait(0));
    object.Signal();
    object.Signal();
    EXPECT_TRUE(object.Wait(0));
    EXPECT_TRUE(object.Wait(kLong));
    object.Reset();
    EXPECT_FALSE(object.Wait(0));
}

TEST(WaitObject, ResetsItselfAfterOneWait) {
    const AlertableWaitObject object(false, true);
    EXPECT_TRUE(object.Wait(0));
    EXPECT_FALSE(object.Wait(0));
}

TEST(WaitObject, WakesAWaitingThread) {
    const AlertableWaitObject object;
    const std::jthread signaller([&] { object.Signal(); });
    EXPECT_TRUE(object.Wait(kWaitForever));
}

TEST(WaitObject, ThatStaysSignalledWakesAllThatWait) {
    // Many times, as a thread that has not begun to wait when the signal comes need not be woken.
    for (int round = 0; round < 100; ++round) {
        const AlertableWaitObject object(true, false);
        std::atomic<int> waiting{0};
        std::vector<std::jthread> threads;
        for (int count = 0; count < 4; ++count)
            threads.emplace_back([&] {
                ++waiting;
                EXPECT_TRUE(object.Wait(kWaitForever));
            });
        while (waiting != 4)
            std::this_thread::yield();
        std::this_thread::yield();
        object.Signal();
    }
}

TEST(WaitObject, TimesOutNotBeforeTheTime) {
    const AlertableWaitObject object;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(object.Wait(20));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(20));
}

TEST(WaitObject, CopiesStandForTheSame) {
    const WaitObjectEx object = WaitObjectEx::Create();
    const WaitObject copy(object);
    object.Signal();
    EXPECT_TRUE(copy.Wait(0));
}

TEST(WaitObject, OneThatStandsForNothingThrows) {
    const WaitObjectEx object;
    EXPECT_FALSE(object.IsValid());
    EXPECT_THROW(object.Wait(0), GenICam::LogicalErrorException);
    EXPECT_THROW(object.Signal(), GenICam::LogicalErrorException);
    EXPECT_THROW(WaitObjects().Add(object), GenICam::LogicalErrorException);
}

TEST(WaitObject, OneThatResetsItselfWakesOneWaitForEachSignal) {
    const AlertableWaitObject object(false, false);
    const AlertableWaitObject taken(false, false);
    std::atomic<int> woken{0};
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 3; ++i) {
            threads.emplace_back([&] {
                EXPECT_TRUE(object.Wait(kLong));
                ++woken;
                taken.Signal();
            });
        }
        for (int i = 1; i <= 3; ++i) {
            object.Signal();
            EXPECT_TRUE(taken.Wait(kLong));
            EXPECT_EQ(woken, i);
        }
    }
}

TEST(WaitObjects, WaitForAnyTellsTheFirstThatIsSignalled) {
    const AlertableWaitObject a;
    const AlertableWaitObject b(true, true);
    const AlertableWaitObject c(true, true);
    WaitObjects objects;
    EXPECT_EQ(objects.Add(a), 0u);
    EXPECT_EQ(objects.Add(b), 1u);
    EXPECT_EQ(objects.Add(c), 2u);
    std::size_t index = 99;
    EXPECT_TRUE(objects.WaitForAny(0, &index));
    EXPECT_EQ(index, 1u);
    EXPECT_TRUE(objects.WaitForAny(0));
}

TEST(WaitObjects, WaitForAnyLeavesTheIndexAloneAfterATimeOut) {
    const AlertableWaitObject a;
    WaitObjects objects;
    objects.Add(a);
    std::size_t index = 99;
    EXPECT_FALSE(objects.WaitForAny(0, &index));
    EXPECT_FALSE(objects.WaitForAny(1, &index));
    EXPECT_EQ(index, 99u);
}

TEST(WaitObjects, WaitForAnyTakesOnlyOneThatResetsItself) {
    const AlertableWaitObject a(false, true);
    const AlertableWaitObject b(false, true);
    WaitObjects objects;
    objects.Add(a);
    objects.Add(b);
    EXPECT_TRUE(objects.WaitForAny(0));
    EXPECT_FALSE(a.Wait(0));
    EXPECT_TRUE(b.Wait(0));
}

TEST(WaitObjects, WaitForAnyWakesUp) {
    const AlertableWaitObject a;
    const AlertableWaitObject b;
    WaitObjects objects;
    objects.Add(a);
    objects.Add(b);
    const std::jthread signaller([&] { b.Signal(); });
    std::size_t index = 99;
    EXPECT_TRUE(objects.WaitForAny(kWaitForever, &index));
    EXPECT_EQ(index, 1u);
}

TEST(WaitObjects, WaitForAllNeedsAllAtTheSameTime) {
    const AlertableWaitObject a;
    const AlertableWaitObject b(false, true);
    WaitObjects objects;
    objects.Add(a);
    objects.Add(b);
    EXPECT_FALSE(objects.WaitForAll(1));
    EXPECT_TRUE(b.Wait(0));  // the failed wait has not reset it
    const std::jthread signaller([&] {
        b.Signal();
        a.Signal();
    });
    EXPECT_TRUE(objects.WaitForAll(kLong));
    EXPECT_FALSE(b.Wait(0));
    EXPECT_TRUE(a.Wait(0));
}

TEST(WaitObjects, StandTheSameObjectTwice) {
    const AlertableWaitObject a(true, true);
    WaitObjects objects;
    objects.Add(a);
    objects.Add(a);
    EXPECT_TRUE(objects.WaitForAll(0));
    a.Reset();
    EXPECT_FALSE(objects.WaitForAll(1));
    EXPECT_FALSE(objects.WaitForAny(1));
}

TEST(WaitObjects, NothingToWaitFor) {
    WaitObjects objects;
    EXPECT_TRUE(objects.WaitForAll(0));
    EXPECT_THROW(objects.WaitForAny(0), GenICam::LogicalErrorException);
    objects.Add(AlertableWaitObject());
    EXPECT_EQ(objects.Size(), 1u);
    objects.RemoveAll();
    EXPECT_EQ(objects.Size(), 0u);
}

TEST(WaitObjects, TwoThreadsInOppositeOrderDoNotDeadlock) {
    const AlertableWaitObject a(false, false);
    const AlertableWaitObject b(false, false);
    std::atomic<int> taken{0};
    const auto wait = [&](const WaitObject& first, const WaitObject& second) {
        WaitObjects objects;
        objects.Add(first);
        objects.Add(second);
        while (taken < 200) {
            if (objects.WaitForAll(1))
                ++taken;
        }
    };
    const std::jthread one([&] { wait(a, b); });
    const std::jthread two([&] { wait(b, a); });
    while (taken < 200) {
        a.Signal();
        b.Signal();
        std::this_thread::yield();
    }
}

}  // namespace
