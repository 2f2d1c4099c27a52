/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of one-shot timers
 */

#include "os/Timer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace {

// A gate that callbacks and tests open for each other.
class Gate {
public:
    void Open() {
        const std::lock_guard lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }
    bool Wait() {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(30), [this] { return m_open; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open = false;
};

void OpenGate(void* gate) noexcept {
    static_cast<Gate*>(gate)->Open();
}
void CountUp(void* count) noexcept {
    ++*static_cast<std::atomic<int>*>(count);
}

constexpr std::uint32_t kNever = 3600000;

TEST(TimerQueue, CallsBackOnce) {
    std::atomic<int> count{0};
    Gate later;
    const auto queue = os::TimerQueue::Create();
    const auto first = queue->CreateOneShot(0, CountUp, &count);
    const auto second = queue->CreateOneShot(50, OpenGate, &later);
    ASSERT_NE(first, 0u);
    ASSERT_NE(second, first);
    ASSERT_TRUE(later.Wait());
    EXPECT_TRUE(queue->DeleteAndWait(first));
    EXPECT_EQ(count, 1);
}

TEST(TimerQueue, RunsWhatIsDueFirst) {
    Gate gate;
    const auto queue = os::TimerQueue::Create();
    queue->CreateOneShot(kNever, CountUp, nullptr);
    queue->CreateOneShot(1, OpenGate, &gate);
    EXPECT_TRUE(gate.Wait());
}

TEST(TimerQueue, NeverCallsADeletedTimer) {
    std::atomic<int> count{0};
    Gate later;
    const auto queue = os::TimerQueue::Create();
    const auto timer = queue->CreateOneShot(kNever, CountUp, &count);
    EXPECT_TRUE(queue->DeleteAndWait(timer));
    EXPECT_FALSE(queue->DeleteAndWait(timer));
    queue->CreateOneShot(1, OpenGate, &later);
    ASSERT_TRUE(later.Wait());
    EXPECT_EQ(count, 0);
}

TEST(TimerQueue, RefusesUnknownTimersAndNoCallback) {
    const auto queue = os::TimerQueue::Create();
    EXPECT_FALSE(queue->DeleteAndWait(0));
    EXPECT_FALSE(queue->DeleteAndWait(77));
    EXPECT_EQ(queue->CreateOneShot(1, nullptr, nullptr), 0u);
}

struct Slow {
    Gate started;
    Gate mayEnd;
    std::atomic<bool> ended{false};

    static void Run(void* self) noexcept {
        auto* slow = static_cast<Slow*>(self);
        slow->started.Open();
        slow->mayEnd.Wait();
        slow->ended = true;
    }
};

TEST(TimerQueue, DeletingWaitsForTheCallback) {
    Slow slow;
    const auto queue = os::TimerQueue::Create();
    const auto timer = queue->CreateOneShot(0, Slow::Run, &slow);
    ASSERT_TRUE(slow.started.Wait());
    std::thread opener([&] { slow.mayEnd.Open(); });
    EXPECT_TRUE(queue->DeleteAndWait(timer));
    EXPECT_TRUE(slow.ended);
    opener.join();
}

TEST(TimerQueue, DestroyingWaitsForTheCallback) {
    Slow slow;
    auto queue = os::TimerQueue::Create();
    queue->CreateOneShot(0, Slow::Run, &slow);
    ASSERT_TRUE(slow.started.Wait());
    std::thread opener([&] { slow.mayEnd.Open(); });
    queue.reset();
    EXPECT_TRUE(slow.ended);
    opener.join();
}

struct Own {
    std::unique_ptr<os::TimerQueue> queue = os::TimerQueue::Create();
    std::atomic<os::TimerQueue::TimerId> timer{0};
    Gate known;
    Gate done;
    bool deleted = true;

    static void DeleteOwn(void* self) noexcept {
        auto* own = static_cast<Own*>(self);
        own->known.Wait();
        own->deleted = own->queue->DeleteAndWait(own->timer);
        own->done.Open();
    }
    static void DestroyOwn(void* self) noexcept {
        auto* own = static_cast<Own*>(self);
        own->known.Wait();
        own->queue.reset();
        own->done.Open();
    }
};

TEST(TimerQueue, RefusesToDeleteFromTheTimersOwnCallback) {
    Own own;
    own.timer = own.queue->CreateOneShot(0, Own::DeleteOwn, &own);
    own.known.Open();
    ASSERT_TRUE(own.done.Wait());
    EXPECT_FALSE(own.deleted);
    EXPECT_TRUE(own.queue->DeleteAndWait(own.timer));
}

TEST(TimerQueue, MayBeDestroyedByACallback) {
    Own own;
    own.queue->CreateOneShot(0, Own::DestroyOwn, &own);
    own.known.Open();
    EXPECT_TRUE(own.done.Wait());
}

TEST(TimerQueue, StandsManyThreads) {
    std::atomic<int> count{0};
    std::atomic<int> refused{0};
    const auto queue = os::TimerQueue::Create();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int turn = 0; turn < 300; ++turn) {
                const auto timer = queue->CreateOneShot(static_cast<std::uint32_t>(turn % 2), CountUp, &count);
                refused += queue->DeleteAndWait(timer) ? 0 : 1;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(refused, 0);
    EXPECT_LE(count, 1200);
}

}  // namespace
