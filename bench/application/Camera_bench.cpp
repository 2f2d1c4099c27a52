/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What Vanto::Camera costs beyond the SDK's own classes, both measured in turns
 *
 * The counter "ratio" is what was measured, "limit" what it may be: at least for frames, at most for the others.
 */

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "../PreparedGrab.h"
#include "GenApi/GenApi.h"
#include "scripted/Scripted.h"
#include "simulator/Simulator.h"
#include "vanto/Camera.h"
#include "vanto/Device.h"
#include "vanto/StreamGrabber.h"
#include "vanto/TlFactory.h"

namespace {

using Clock = std::chrono::steady_clock;

// A camera on a port, with a frame grabber that is as fast as possible.
class Machine {
public:
    Machine() {
        simulator.Add("cam0", {});
        m_surroundings.WritePorts(
            "<Port><ID>COM_Port#cam0</ID><Enabled>1</Enabled><Manufacturer>Marlow</Manufacturer>"
            "<DeviceSpecificString>SaperaSimulated;FrameRate=0;Pattern=Black</DeviceSpecificString></Port>");
        camera = std::make_unique<Vanto::Camera>();
        camera->Set("Width", 1024);
        camera->Set("Height", 1024);
    }

    scripted::Surroundings m_surroundings;
    MarlowSim::Simulator simulator{m_surroundings.links.Path()};
    std::unique_ptr<Vanto::Camera> camera;
};

template <class Action>
double SecondsOf(const Action& action) {
    const auto begin = Clock::now();
    action();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

double MedianOf(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Runs two actions in turns and reports the medians of a turn, in nanoseconds.
template <class Bare, class Ours>
void CompareReads(benchmark::State& state, double limit, const Bare& bare, const Ours& ours) {
    constexpr int kRounds = 201;
    constexpr int kTurns = 1000;
    std::vector<double> bareTimes;
    std::vector<double> ourTimes;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (int round = 0; round < kRounds; ++round) {
            bareTimes.push_back(SecondsOf([&] {
                for (int turn = 0; turn < kTurns; ++turn)
                    benchmark::DoNotOptimize(bare());
            }));
            ourTimes.push_back(SecondsOf([&] {
                for (int turn = 0; turn < kTurns; ++turn)
                    benchmark::DoNotOptimize(ours());
            }));
        }
    }
    const double bareMedian = MedianOf(bareTimes) / kTurns;
    const double ourMedian = MedianOf(ourTimes) / kTurns;
    state.counters["bare_ns"] = bareMedian * 1e9;
    state.counters["ours_ns"] = ourMedian * 1e9;
    state.counters["ratio"] = ourMedian / bareMedian;
    state.counters["limit"] = limit;
}

void ReadThroughAHandle(benchmark::State& state) {
    const Machine machine;
    const GenApi::CIntegerPtr node = machine.camera->Features().Nodes().GetNode("Width");
    const Vanto::Feature width = (*machine.camera)["Width"];
    CompareReads(
        state, 2.5, [&] { return node->GetValue(); }, [&] { return width.Get<std::int64_t>(); });
}
BENCHMARK(ReadThroughAHandle)->Iterations(1)->Unit(benchmark::kMillisecond);

void ReadByName(benchmark::State& state) {
    const Machine machine;
    GenApi::INodeMap& nodes = machine.camera->Features().Nodes();
    const auto bare = [&] { return GenApi::CIntegerPtr(nodes.GetNode("Width"))->GetValue(); };
    CompareReads(state, 2.5, bare, [&] { return machine.camera->Get<std::int64_t>("Width"); });
}
BENCHMARK(ReadByName)->Iterations(1)->Unit(benchmark::kMillisecond);

constexpr int kFrames = 2000;

/// Frames of 1 MB, with the SDK's own stream grabber.
double SecondsOfBareFrames(Vanto::IVantoDevice& device) {
    const bench::PreparedGrab grab(device);
    grab.QueueAll();
    return SecondsOf([&] { grab.Take(kFrames); });
}

double SecondsOfOurFrames(const Vanto::Camera& camera) {
    Vanto::StreamOptions options;
    options.buffers = bench::PreparedGrab::kBuffers;
    Vanto::FrameStream stream = camera.Stream(options);
    return SecondsOf([&] {
        for (int taken = 0; taken < kFrames; ++taken)
            benchmark::DoNotOptimize(stream.Next()->Data());
    });
}

void Frames(benchmark::State& state) {
    const Machine machine;
    std::vector<double> bare;
    std::vector<double> ours;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (int round = 0; round < 5; ++round) {
            bare.push_back(SecondsOfBareFrames(machine.camera->Device()));
            ours.push_back(SecondsOfOurFrames(*machine.camera));
        }
    }
    const double bareMedian = MedianOf(bare);
    const double ourMedian = MedianOf(ours);
    state.counters["bare_fps"] = kFrames / bareMedian;
    state.counters["ours_fps"] = kFrames / ourMedian;
    state.counters["ratio"] = bareMedian / ourMedian;
    state.counters["limit"] = 0.95;
}
BENCHMARK(Frames)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
