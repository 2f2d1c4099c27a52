/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Waking a thread through a wait object, as a ratio to a bare condition variable; the limit is 2
 */

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "vanto/WaitObject.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kTurns = 5000;
constexpr int kRounds = 7;
constexpr std::uint32_t kLong = 60000;

class BareEvent {
public:
    void Signal() {
        const std::lock_guard lock(m_mutex);
        m_signalled = true;
        m_changed.notify_one();
    }
    void Wait() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_signalled; });
        m_signalled = false;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_signalled = false;
};

class WaitObjectEvent {
public:
    void Signal() { m_object.Signal(); }
    void Wait() { benchmark::DoNotOptimize(m_object.Wait(kLong)); }

private:
    Vanto::AlertableWaitObject m_object{false, false};
};

// Two threads wake each other in turns.
template <class Event>
double SecondsOfTurns() {
    Event ping;
    Event pong;
    const std::jthread partner([&] {
        for (int i = 0; i < kTurns; ++i) {
            ping.Wait();
            pong.Signal();
        }
    });
    const auto start = Clock::now();
    for (int i = 0; i < kTurns; ++i) {
        ping.Signal();
        pong.Wait();
    }
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void WakeUp(benchmark::State& state) {
    double bare = 1e9;
    double object = 1e9;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round) {
            bare = std::min(bare, SecondsOfTurns<BareEvent>());
            object = std::min(object, SecondsOfTurns<WaitObjectEvent>());
        }
    }
    state.counters["bare_us"] = bare / kTurns / 2 * 1e6;
    state.counters["object_us"] = object / kTurns / 2 * 1e6;
    state.counters["ratio"] = object / bare;
    state.counters["limit"] = 2;
}
BENCHMARK(WakeUp)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
