/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How near the driver comes to the speed of the line: the time it takes over the time that the bytes take
 *
 * The counter "ratio" is what was measured, "limit" what it may be at most.
 */

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "Chain.h"
#include "gencp/BaudRate.h"
#include "gencp/Protocol.h"
#include "simulator/CameraRegisters.h"

namespace {

using namespace marlow::test;
using Seconds = std::chrono::duration<double>;

constexpr std::size_t kDescriptionSize = 200'000;
constexpr std::size_t kReadPackets = 2 * gencp::kHeaderSize + gencp::kRangeSize + 4;  // bytes, both ways
constexpr auto kWidth = MarlowSim::registers::kWidth;

double LineTime(std::size_t bytes, std::int64_t flag) {
    const auto rate = gencp::FindBaudRateByFlag(static_cast<std::uint32_t>(flag))->bitsPerSecond;
    return Seconds(gencp::TransferTime(bytes, rate)).count();
}

MarlowSim::CameraOptions Paced(std::chrono::milliseconds delay = {}) {
    MarlowSim::CameraOptions options;
    options.serial = "1";
    options.paced = true;
    options.descriptionSize = kDescriptionSize;
    options.faults.delay = delay;
    return options;
}

bool Open(Chain& chain, benchmark::State& state, std::int64_t flag) {
    const bool isOpen = chain.Probe() == 0 && chain.SetRate(static_cast<CLUINT32>(flag)) == 0;
    if (!isOpen)
        state.SkipWithError(chain.LastError(chain.cookie).c_str());
    return isOpen;
}

template <typename Operation>
double Measure(Operation operation) {
    const auto begin = std::chrono::steady_clock::now();
    operation();
    return Seconds(std::chrono::steady_clock::now() - begin).count();
}

// Other programs of the machine disturb single turns: the middle of many counts, or the best of few.
double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The description's own bytes are the limit: headers, commands and waiting are what the driver adds.
void FetchDescription(benchmark::State& state) {
    Chain chain(Paced());
    if (!Open(chain, state, state.range(0)))
        return;
    const std::string xmlId = chain.XmlId();
    double best = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        std::vector<char> file;
        CLINT32 code = 0;
        const double seconds = Measure([&] { code = chain.Fetch(xmlId, file); });
        if (code != 0 || file.size() < kDescriptionSize)
            return state.SkipWithError(chain.LastError(chain.cookie).c_str());
        state.SetIterationTime(seconds);
        const double ratio = seconds / LineTime(file.size(), state.range(0));
        best = best == 0 ? ratio : std::min(best, ratio);
    }
    state.counters["ratio"] = best;
    state.counters["limit"] = static_cast<double>(state.range(1)) / 100;
}
BENCHMARK(FetchDescription)
    ->ArgNames({"flag", "percent"})
    ->Args({CL_BAUDRATE_115200, 109})
    ->Args({CL_BAUDRATE_921600, 118})
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(3);

// The limit is the two packets' time on the line and the camera's own delay.
void ReadRegister(benchmark::State& state) {
    const std::chrono::milliseconds delay(state.range(1));
    Chain chain(Paced(delay));
    if (!Open(chain, state, state.range(0)))
        return;
    std::vector<char> value(kWidth.length);
    std::vector<double> times;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        CLINT32 code = 0;
        const double seconds = Measure([&] { code = chain.Read(kWidth.address, value); });
        if (code != 0)
            return state.SkipWithError(chain.LastError(chain.cookie).c_str());
        state.SetIterationTime(seconds);
        times.push_back(seconds);
    }
    const double limit = LineTime(kReadPackets, state.range(0)) + Seconds(delay).count();
    state.counters["ratio"] = Median(times) / limit;
    state.counters["limit"] = 1.15;
}
BENCHMARK(ReadRegister)
    ->ArgNames({"flag", "delay_ms"})
    ->Args({CL_BAUDRATE_9600, 0})
    ->Args({CL_BAUDRATE_115200, 0})
    ->Args({CL_BAUDRATE_115200, 5})
    ->Args({CL_BAUDRATE_921600, 5})
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(50);

// What an application waits for when a connection that was closed for inactivity is opened again, in register reads.
void Reconnect(benchmark::State& state) {
    Chain chain(Paced(std::chrono::milliseconds(1)));
    if (!Open(chain, state, state.range(0)))
        return;
    std::vector<char> value(kWidth.length);
    std::vector<double> readTimes;
    std::vector<double> connectTimes;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        readTimes.push_back(Measure([&] { chain.Read(kWidth.address, value); }));
        chain.Disconnect();
        CLINT32 code = 0;
        const double seconds = Measure([&] { code = chain.Probe("Marlow#Heron#H2048#1"); });
        if (code != 0)
            return state.SkipWithError(chain.LastError().c_str());
        state.SetIterationTime(seconds);
        connectTimes.push_back(seconds);
    }
    state.counters["ratio"] = Median(connectTimes) / Median(readTimes);
    state.counters["limit"] = 3;
}
BENCHMARK(Reconnect)
    ->ArgName("flag")
    ->Arg(CL_BAUDRATE_115200)
    ->Arg(CL_BAUDRATE_921600)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(50);

// From an access to the error when the camera has died meanwhile, over the 1.2 s that it may take.
constexpr double kTimeToError = 1.2;

enum State : std::int64_t { kSilent, kDiesAtTheChange, kDiesAtTheConfirmation, kNotCarried, kAlwaysPending, kNoise };

const char* FaultOf(std::int64_t state) {
    constexpr const char* kFaults[] = {"silent=on",         "silent-after=0",    "silent-after=2",
                                       "line-limit=115200", "always-pending=on", "noise=on"};
    return kFaults[state];
}

void FailedAccess(benchmark::State& state) {
    double longest = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        Chain chain(Paced());
        if (!Open(chain, state, state.range(0)))
            return;
        CLUINT32 rates = 0;
        chain.driver.getParam(chain.line.get(), CLProtocol::CLP_DEVICE_SUPPORTED_BAUDERATES, chain.cookie,
                              reinterpret_cast<char*>(&rates), sizeof rates, Chain::kTimeout);
        const std::string fault = FaultOf(state.range(1));
        const auto equals = fault.find('=');
        chain.simulator.SetFault(Chain::kName, fault.substr(0, equals), fault.substr(equals + 1));
        std::vector<char> value(kWidth.length);
        const bool isChange = state.range(1) >= kDiesAtTheChange && state.range(1) <= kNotCarried;
        CLINT32 code = 0;
        const double seconds =
            Measure([&] { code = isChange ? chain.SetRate(CL_BAUDRATE_921600) : chain.Read(kWidth.address, value); });
        if (code >= 0)
            return state.SkipWithError("the access did not fail");
        state.SetIterationTime(seconds);
        longest = std::max(longest, seconds);
    }
    state.counters["ratio"] = longest / kTimeToError;
    state.counters["limit"] = 1;
}
BENCHMARK(FailedAccess)
    ->ArgNames({"flag", "state"})
    ->ArgsProduct({{CL_BAUDRATE_9600, CL_BAUDRATE_115200},
                   {kSilent, kDiesAtTheChange, kDiesAtTheConfirmation, kNotCarried, kAlwaysPending, kNoise}})
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(2);

// A port on which nobody answers.
void SilentPort(benchmark::State& state) {
    auto options = Paced();
    options.faults.silent = true;
    Chain chain(options);
    double longest = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        CLINT32 code = 0;
        const double seconds = Measure([&] { code = chain.Probe(); });
        if (code >= 0)
            return state.SkipWithError("somebody answers");
        state.SetIterationTime(seconds);
        longest = std::max(longest, seconds);
    }
    state.counters["ratio"] = longest / kTimeToError;
    state.counters["limit"] = 1;
}
BENCHMARK(SilentPort)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(2);

}  // namespace

BENCHMARK_MAIN();
