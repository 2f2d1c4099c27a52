/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A log message that is switched off, as a ratio to a relaxed atomic load; the limit is 3
 */

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <vector>

#include "vanto/TraceLog.h"

namespace {

using namespace Vanto::tracelog;
using Clock = std::chrono::steady_clock;

constexpr int kCalls = 2'000'000;
constexpr int kRounds = 15;

template <class Operation>
double SecondsFor(Operation operation) {
    const auto start = Clock::now();
    for (int i = 0; i < kCalls; ++i) {
        operation(i);
        benchmark::ClobberMemory();
    }
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Measured in turns, and the best of each: the machine does other things as well.
void SwitchedOffMessage(benchmark::State& state) {
    const CategoryId category = LogGetCatID("Bench.Off");
    static std::atomic<std::uint32_t> plain{0};
    double load = 1e9;
    double message = 1e9;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round) {
            load = std::min(load,
                            SecondsFor([](int) { benchmark::DoNotOptimize(plain.load(std::memory_order_relaxed)); }));
            message = std::min(message,
                               SecondsFor([&](int i) { LogTrace(category, kDebug, "Value %d of '%s'", i, "port"); }));
        }
    }
    state.counters["load_ns"] = load / kCalls * 1e9;
    state.counters["message_ns"] = message / kCalls * 1e9;
    state.counters["ratio"] = message / load;
    state.counters["limit"] = 3;
}
BENCHMARK(SwitchedOffMessage)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
