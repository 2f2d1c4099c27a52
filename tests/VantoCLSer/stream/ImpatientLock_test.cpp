/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Waiting for a lock that may not be had
 */

#include "VantoCLSer/stream/ImpatientLock.h"

#include <gtest/gtest.h>

#include <future>

namespace {

using Vanto::CImpatientLock;

/// A lock that is free after a number of questions, as GenICam's own is: it can only be tried.
struct TriedLock {
    bool TryLock() { return --questions < 0; }
    void Unlock() { ++unlocked; }

    int questions = 0;
    int unlocked = 0;
};

/// A lock that another thread gives back for too short a moment to be met by a question.
struct BusyLock {
    bool TryLock() { return false; }
    bool TryLockFor(std::chrono::milliseconds) { return --slices < 0; }
    void Unlock() { ++unlocked; }

    int slices = 0;
    int unlocked = 0;
};

constexpr auto kNever = [] { return false; };

TEST(ImpatientLock, HoldsAFreeLockForItsLifetime) {
    TriedLock lock;
    {
        const CImpatientLock held(lock, kNever);
        EXPECT_TRUE(held);
        EXPECT_EQ(lock.unlocked, 0);
    }
    EXPECT_EQ(lock.unlocked, 1);
}

TEST(ImpatientLock, AsksNobodyAboutAFreeLock) {
    TriedLock lock;
    const CImpatientLock held(lock, [] { return ADD_FAILURE(), true; });
    EXPECT_TRUE(held);
}

TEST(ImpatientLock, WaitsForALockThatCannotBeMetByAsking) {
    BusyLock lock{.slices = 3};
    int asked = 0;
    {
        const CImpatientLock held(lock, [&] { return ++asked > 10; });
        EXPECT_TRUE(held);
    }
    EXPECT_EQ(asked, 4);
    EXPECT_EQ(lock.unlocked, 1);
}

TEST(ImpatientLock, AsksALockWithoutAPauseThatCanOnlyBeTried) {
    TriedLock lock{.questions = 50};
    const CImpatientLock held(lock, kNever);
    EXPECT_TRUE(held);
}

TEST(ImpatientLock, IsGivenUp) {
    BusyLock busy{.slices = 1000};
    TriedLock tried{.questions = 1 << 30};
    int asked = 0;
    {
        const CImpatientLock first(busy, [&] { return ++asked == 3; });
        EXPECT_FALSE(first);
        const CImpatientLock second(tried, [&] { return ++asked == 6; });
        EXPECT_FALSE(second);
    }
    EXPECT_EQ(busy.unlocked, 0);
    EXPECT_EQ(tried.unlocked, 0);
}

TEST(ImpatientLock, WaitsForANodeMapUntilItIsFree) {
    GenApi::CLock lock;
    lock.Lock();
    std::promise<void> isWaiting;
    auto waiting = std::async(std::launch::async, [&] {
        bool hasAsked = false;
        const CImpatientLock held(lock, [&] {
            if (!std::exchange(hasAsked, true))
                isWaiting.set_value();
            return false;
        });
        return static_cast<bool>(held);
    });
    isWaiting.get_future().wait();
    lock.Unlock();
    EXPECT_TRUE(waiting.get());
}

}  // namespace
