/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the recursive lock
 */

#include "GenApi/Synch.h"

#include <gtest/gtest.h>

#include <functional>
#include <future>

namespace GenApi {
namespace {

using namespace std::chrono_literals;

bool OnAnotherThread(const std::function<bool()>& action) {
    return std::async(std::launch::async, action).get();
}

TEST(Lock, CanBeHadAgainByWhoHasIt) {
    CLock lock;
    EXPECT_TRUE(lock.TryLockFor(0ms));
    EXPECT_TRUE(lock.TryLockFor(1ms));
    EXPECT_TRUE(lock.TryLock());
    for (int times = 0; times < 3; ++times) {
        EXPECT_FALSE(OnAnotherThread([&] { return lock.TryLock(); }));
        lock.Unlock();
    }
    EXPECT_TRUE(OnAnotherThread([&] { return lock.TryLock() && (lock.Unlock(), true); }));
}

TEST(Lock, IsGivenUpAfterAWhile) {
    CLock lock;
    const AutoLock held(lock);
    EXPECT_FALSE(OnAnotherThread([&] { return lock.TryLockFor(0ms); }));
    EXPECT_FALSE(OnAnotherThread([&] { return lock.TryLockFor(1ms); }));
}

TEST(Lock, IsWaitedForUntilItIsFree) {
    CLock lock;
    lock.Lock();
    auto waiting = std::async(std::launch::async, [&] { return lock.TryLockFor(60s) && (lock.Unlock(), true); });
    lock.Unlock();
    EXPECT_TRUE(waiting.get());
}

}  // namespace
}  // namespace GenApi
