/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How long people and shells wait for vanto-cl
 *
 * The counter "ratio" is what was measured, "limit" what it may be at most: times one of the other, or seconds.
 */
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "PlayedCameras.h"
#include "SilentLine.h"
#include "configuration/ConfigurationWriter.h"
#include "system/Files.h"

namespace {

using tools_test::Environment;
using tools_test::PlayedCameras;

constexpr int kRuns = 11;

double SecondsOf(const std::vector<std::string>& arguments, const Environment& environment) {
    const auto begin = std::chrono::steady_clock::now();
    const tools_test::RunResult run = tools_test::RunVantoCl(arguments, environment);
    if (run.exitCode != 0)
        throw std::runtime_error(run.err);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double MedianOf(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void Report(benchmark::State& state, double ratio, double limit) {
    state.counters["ratio"] = ratio;
    state.counters["limit"] = limit;
}

std::vector<std::string> Names(int cameras) {
    std::vector<std::string> names;
    for (int index = 0; index < cameras; ++index)
        names.push_back("cam" + std::to_string(index) + ",serial=S" + std::to_string(index));
    return names;
}

/// The same cameras with a port more, behind which nobody answers.
class WithASilentPort {
public:
    explicit WithASilentPort(const PlayedCameras& cameras) : m_line(cameras.Folder() / "silent") {
        std::vector<std::string> ports{"COM_Port#silent"};
        for (int index = 0; index < 32; ++index)
            ports.push_back("COM_Port#cam" + std::to_string(index));
        tools::WriteFile(cameras.Folder() / "PortConfiguration_x64.xml", tools::PortConfigurationText(ports));
    }

private:
    tools_test::SilentLine m_line;
};

// A camera that a list has shown is asked alone, however many others there are.
void KnownCameraAmongManyAgainstAlone(benchmark::State& state) {
    const PlayedCameras alone(Names(1));
    const PlayedCameras many(Names(32));
    const WithASilentPort silent(many);
    const std::vector<std::string> get{"get", "S0", "Width"};
    SecondsOf({"list"}, alone.Variables());
    SecondsOf({"list"}, many.Variables());
    SecondsOf(get, alone.Variables());
    SecondsOf(get, many.Variables());
    for (auto _ : state) {
        std::vector<double> ratios;
        for (int run = 0; run < kRuns; ++run) {
            const double one = SecondsOf(get, alone.Variables());
            ratios.push_back(SecondsOf(get, many.Variables()) / one);
        }
        Report(state, MedianOf(ratios), 1.1);
    }
}

void StartUp(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<double> times;
        for (int run = 0; run < kRuns; ++run)
            times.push_back(SecondsOf({"--version"}, {}));
        Report(state, MedianOf(times), 0.05);
    }
}

// A shell asks at each TAB; beyond 50 ms people notice.
void Completion(benchmark::State& state) {
    const PlayedCameras many(Names(32));
    SecondsOf({"list"}, many.Variables());
    SecondsOf({"get", "S0", "Width"}, many.Variables());
    for (auto _ : state) {
        std::vector<double> times;
        for (int run = 0; run < kRuns; ++run)
            times.push_back(SecondsOf({"complete", "line", "set", "S0", "PixelFormat="}, many.Variables()));
        Report(state, MedianOf(times), 0.05);
    }
}

BENCHMARK(KnownCameraAmongManyAgainstAlone)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(StartUp)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Completion)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
