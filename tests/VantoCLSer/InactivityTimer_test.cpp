/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the timer that closes a port after inactivity
 */

#include "VantoCLSer/InactivityTimer.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <stdexcept>
#include <thread>
#include <vector>

namespace Vanto {
namespace {

constexpr std::chrono::seconds kLong(60);

// What a callback does and how often it ran.
class Target {
public:
    static void Call(void* first, void* second) { static_cast<Target*>(second)->Run(first); }

    bool WaitForCalls(int count) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, kLong, [&] { return m_calls >= count; });
    }
    int Calls() const {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }
    int Ended() const {
        const std::lock_guard lock(m_mutex);
        return m_ended;
    }

    std::function<void()> action;
    void* first = this;

private:
    void Run(void* given) {
        {
            const std::lock_guard lock(m_mutex);
            first = given;
            ++m_calls;
            m_changed.notify_all();
        }
        if (action)
            action();
        const std::lock_guard lock(m_mutex);
        ++m_ended;
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_calls = 0;
    int m_ended = 0;
};

class InactivityTimer : public testing::Test {
protected:
    bool Restart(std::uint32_t milliseconds) {
        m_dueTime = milliseconds;
        return m_timer->Restart(m_dueTime, &Target::Call, &m_target);
    }
    // As a callback that waits for a lock does.
    void GiveWay() {
        while (!m_timer->IsBeingDeleted())
            std::this_thread::yield();
    }

    static constexpr std::uint32_t kNever = 3600000;

    Target m_target;
    std::atomic<std::uint32_t> m_dueTime{0};
    std::unique_ptr<CInactivityTimer> m_timer = std::make_unique<CInactivityTimer>();
};

TEST_F(InactivityTimer, CallsBackOnce) {
    EXPECT_TRUE(Restart(1));
    EXPECT_TRUE(m_target.WaitForCalls(1));
    EXPECT_TRUE(m_timer->Stop());
    EXPECT_EQ(m_target.Calls(), 1);
}

TEST_F(InactivityTimer, PassesNullAndItsContext) {
    Restart(1);
    EXPECT_TRUE(m_target.WaitForCalls(1));
    m_timer->Stop();
    EXPECT_EQ(m_target.first, nullptr);
}

TEST_F(InactivityTimer, StartsAfresh) {
    EXPECT_TRUE(Restart(kNever));
    EXPECT_TRUE(Restart(1));
    EXPECT_TRUE(m_target.WaitForCalls(1));
    m_timer->Stop();
    EXPECT_EQ(m_target.Calls(), 1);
}

TEST_F(InactivityTimer, StartsAfreshAfterItsCallback) {
    for (int count = 1; count <= 3; ++count) {
        EXPECT_TRUE(Restart(1));
        EXPECT_TRUE(m_target.WaitForCalls(count));
    }
}

// R restarts the timer and waits for the callback, which wants to stop the timer.
TEST_F(InactivityTimer, RefusesToBeStoppedByItsCallbackWhileItIsRestarted) {
    bool isStopped = true;
    m_target.action = [&] {
        GiveWay();
        isStopped = m_timer->Stop();
    };
    Restart(1);
    EXPECT_TRUE(m_target.WaitForCalls(1));
    EXPECT_TRUE(Restart(kNever));
    EXPECT_FALSE(isStopped);
}

TEST_F(InactivityTimer, IsOnlyStoppedByZero) {
    EXPECT_TRUE(Restart(0));
    EXPECT_TRUE(Restart(kNever));
    EXPECT_TRUE(Restart(0));
    m_timer.reset();
    EXPECT_EQ(m_target.Calls(), 0);
}

TEST_F(InactivityTimer, CanBeStoppedAtAnyTime) {
    EXPECT_TRUE(m_timer->Stop());
    Restart(kNever);
    EXPECT_TRUE(m_timer->Stop());
    EXPECT_TRUE(m_timer->Stop());
    Restart(1);
    m_target.WaitForCalls(1);
    EXPECT_TRUE(m_timer->Stop());
}

TEST_F(InactivityTimer, ReadsTheDueTimeItself) {
    std::atomic<std::uint32_t> dueTime{kNever};
    EXPECT_TRUE(m_timer->Restart(dueTime, &Target::Call, &m_target));
    dueTime = 1;
    EXPECT_TRUE(m_timer->Restart(dueTime, &Target::Call, &m_target));
    EXPECT_TRUE(m_target.WaitForCalls(1));
}

TEST_F(InactivityTimer, SwallowsExceptions) {
    m_target.action = [] { throw std::runtime_error("of the callback"); };
    Restart(1);
    EXPECT_TRUE(m_target.WaitForCalls(1));
    EXPECT_TRUE(Restart(1));
    EXPECT_TRUE(m_target.WaitForCalls(2));
}

TEST_F(InactivityTimer, IsNotBeingDeletedAtRest) {
    EXPECT_FALSE(m_timer->IsBeingDeleted());
    Restart(kNever);
    EXPECT_FALSE(m_timer->IsBeingDeleted());
    m_timer->Stop();
    EXPECT_FALSE(m_timer->IsBeingDeleted());
}

TEST_F(InactivityTimer, WaitsForItsCallbackWhenStopped) {
    m_target.action = [this] { GiveWay(); };
    Restart(1);
    ASSERT_TRUE(m_target.WaitForCalls(1));
    EXPECT_TRUE(m_timer->Stop());
    EXPECT_EQ(m_target.Ended(), 1);
}

TEST_F(InactivityTimer, WaitsForItsCallbackWhenRestarted) {
    m_target.action = [this] { GiveWay(); };
    Restart(1);
    ASSERT_TRUE(m_target.WaitForCalls(1));
    EXPECT_TRUE(Restart(kNever));
    EXPECT_EQ(m_target.Ended(), 1);
}

TEST_F(InactivityTimer, WaitsForItsCallbackWhenDestroyed) {
    // The pointer itself is the test's: the callback only needs the object, which outlives it.
    CInactivityTimer* const timer = m_timer.get();
    m_target.action = [timer] {
        while (!timer->IsBeingDeleted())
            std::this_thread::yield();
    };
    Restart(1);
    ASSERT_TRUE(m_target.WaitForCalls(1));
    m_timer.reset();
    EXPECT_EQ(m_target.Ended(), 1);
}

TEST_F(InactivityTimer, IsDestroyedWhileItWaits) {
    Restart(kNever);
    m_timer.reset();
    EXPECT_EQ(m_target.Calls(), 0);
}

TEST_F(InactivityTimer, IsDestroyedAtTheMomentOfItsCallback) {
    for (int round = 0; round < 100; ++round) {
        m_timer = std::make_unique<CInactivityTimer>();
        Restart(1);
        std::this_thread::sleep_for(std::chrono::microseconds(900 + 2 * round));
        m_timer.reset();
        EXPECT_EQ(m_target.Calls(), m_target.Ended());
    }
}

TEST_F(InactivityTimer, IsRestartedByTwoThreadsAtOnce) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 2; ++thread)
        threads.emplace_back([this] {
            for (int round = 0; round < 500; ++round)
                EXPECT_TRUE(m_timer->Restart(m_dueTime, &Target::Call, &m_target));
        });
    for (int round = 0; round < 500; ++round)
        m_dueTime = static_cast<std::uint32_t>(round % 3);
    m_dueTime = 1;
    for (std::thread& thread : threads)
        thread.join();
    // The last to restart it left a timer behind that fires.
    const int calls = m_target.Calls();
    EXPECT_TRUE(m_timer->Restart(m_dueTime, &Target::Call, &m_target));
    EXPECT_TRUE(m_target.WaitForCalls(calls + 1));
}

TEST_F(InactivityTimer, IsRestartedAndStoppedByTwoThreadsAtOnce) {
    m_dueTime = 1;
    std::thread restarts([this] {
        for (int round = 0; round < 500; ++round)
            EXPECT_TRUE(m_timer->Restart(m_dueTime, &Target::Call, &m_target));
    });
    for (int round = 0; round < 500; ++round)
        EXPECT_TRUE(m_timer->Stop());
    restarts.join();
    EXPECT_TRUE(m_timer->Stop());
    EXPECT_EQ(m_target.Calls(), m_target.Ended());
}

// What a queue does that the system lets down, and what it was asked for.
struct QueueScript {
    bool creates = true;
    bool starts = true;
    bool deletes = true;
    int started = 0;
    int deleted = 0;
};

class ScriptedQueue : public os::TimerQueue {
public:
    explicit ScriptedQueue(QueueScript& script) : m_script(script) {}

    TimerId CreateOneShot(std::uint32_t, Callback, void*) noexcept override {
        ++m_script.started;
        return m_script.starts ? 1 : 0;
    }
    bool DeleteAndWait(TimerId) noexcept override {
        ++m_script.deleted;
        return m_script.deletes;
    }

private:
    QueueScript& m_script;
};

class FailingTimer : public testing::Test {
protected:
    bool Restart() { return m_timer.Restart(m_dueTime, &Target::Call, &m_target); }

    QueueScript m_script;
    Target m_target;
    const std::atomic<std::uint32_t> m_dueTime{1000};
    CInactivityTimer m_timer{[this]() -> std::unique_ptr<os::TimerQueue> {
        return m_script.creates ? std::make_unique<ScriptedQueue>(m_script) : nullptr;
    }};
};

TEST_F(FailingTimer, WithoutAQueueIsNotStarted) {
    m_script.creates = false;
    EXPECT_FALSE(Restart());
    EXPECT_TRUE(m_timer.Stop());
    m_script.creates = true;
    EXPECT_TRUE(Restart());
    EXPECT_EQ(m_script.started, 1);
}

TEST_F(FailingTimer, ThatCannotBeStartedIsNone) {
    m_script.starts = false;
    EXPECT_FALSE(Restart());
    EXPECT_TRUE(m_timer.Stop());
    EXPECT_EQ(m_script.deleted, 0);
    m_script.starts = true;
    EXPECT_TRUE(Restart());
}

TEST_F(FailingTimer, ThatCannotBeDeletedStays) {
    ASSERT_TRUE(Restart());
    m_script.deletes = false;
    EXPECT_FALSE(Restart());
    EXPECT_FALSE(m_timer.Stop());
    EXPECT_FALSE(m_timer.IsBeingDeleted());
    EXPECT_EQ(m_script.started, 1);
    m_script.deletes = true;
    EXPECT_TRUE(Restart());
    EXPECT_EQ(m_script.deleted, 3);
    EXPECT_EQ(m_script.started, 2);
}

}  // namespace
}  // namespace Vanto
