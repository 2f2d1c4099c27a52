/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Frames beside threads that read and write features without a pause
 *
 * The counter "ratio" is what was measured, "limit" what it may be at least. "gap_ms" is the longest time between two
 * frames, "period_ms" that of the frames, "accesses" how often features were used meanwhile.
 */

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "../PreparedGrab.h"
#include "GenApi/GenApi.h"
#include "scripted/Scripted.h"
#include "simulator/Simulator.h"
#include "vanto/StreamGrabber.h"
#include "vanto/TlFactory.h"

namespace {

using Vanto::CTlFactory;
using Vanto::GrabResult;
using Vanto::IVantoDevice;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr double kLeastBesideFeatures = 0.99;
constexpr int kFrameRate = 100;

/// Cameras, all open, each with a stream grabber.
class Machine {
public:
    Machine(std::size_t cameras, bool isPaced, const std::string& parameters) {
        std::string ports;
        for (std::size_t index = 0; index < cameras; ++index) {
            const std::string name = "cam" + std::to_string(index);
            MarlowSim::CameraOptions options;
            options.paced = isPaced;
            simulator.Add(name, options);
            ports +=
                "<Port><ID>COM_Port#" + name +
                "</ID><Enabled>1</Enabled><Manufacturer>Marlow</Manufacturer><DeviceSpecificString>SaperaSimulated;" +
                parameters + "</DeviceSpecificString></Port>";
        }
        m_surroundings.WritePorts(ports);
        Vanto::DeviceInfoList list;
        CTlFactory::GetInstance().EnumerateDevices(list);
        for (std::size_t index = 0; index < list.size(); ++index) {
            devices.push_back(CTlFactory::GetInstance().CreateDevice(list[index]));
            devices.back()->Open();
        }
    }
    ~Machine() {
        for (IVantoDevice* device : devices)
            CTlFactory::GetInstance().DestroyDevice(device);
        CTlFactory::GetInstance().ReleaseUnusedTls();
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    std::vector<IVantoDevice*> devices;

private:
    scripted::Surroundings m_surroundings;

public:
    MarlowSim::Simulator simulator{m_surroundings.links.Path()};
};

/// A grab of one camera whose frames are counted.
class Grab {
public:
    explicit Grab(IVantoDevice& device) : m_grab(device) {}

    /// Frames that arrive within a time, and the longest pause between two.
    std::size_t Count(std::chrono::milliseconds duration) {
        m_grab.QueueAll();
        const auto end = Clock::now() + duration;
        std::size_t frames = 0;
        for (auto last = Clock::now(); Clock::now() < end;) {
            GrabResult result;
            if (!m_grab->RetrieveResult(result)) {
                m_grab->GetWaitObject().Wait(100);
                continue;
            }
            longestGap = std::max(longestGap, Seconds(Clock::now() - last));
            last = Clock::now();
            frames += result.Succeeded() ? 1 : 0;
            m_grab->QueueBuffer(result.handle);
        }
        m_grab.Cancel();
        return frames;
    }

    Seconds longestGap{0};

private:
    const bench::PreparedGrab m_grab;
};

void UseFeatures(IVantoDevice& device, const std::stop_token& stop, std::atomic<std::size_t>& accesses) {
    GenApi::INodeMap& map = *device.GetNodeMap();
    const GenApi::CIntegerPtr width = map.GetNode("Width");
    const GenApi::CIntegerPtr offset = map.GetNode("OffsetX");
    for (std::int64_t turn = 0; !stop.stop_requested(); ++turn, accesses += 2) {
        benchmark::DoNotOptimize(width->GetValue(false, true));
        offset->SetValue(turn % 2 * 16, false);
    }
}

// Frames a second with threads that use features, over those without.
void FramesBesideFeatures(benchmark::State& state) {
    constexpr std::chrono::seconds kDuration(5);
    Machine machine(1, state.range(1) != 0, "FrameRate=" + std::to_string(kFrameRate));
    IVantoDevice& device = *machine.devices.at(0);
    GenApi::CIntegerPtr(device.GetNodeMap()->GetNode("Width"))->SetValue(512);
    Grab grab(device);
    std::size_t alone = 0;
    std::size_t beside = 0;
    std::atomic<std::size_t> accesses{0};
    for (auto iteration : state) {
        static_cast<void>(iteration);
        alone = grab.Count(kDuration);
        grab.longestGap = {};
        std::vector<std::jthread> threads;
        for (std::int64_t thread = 0; thread < state.range(0); ++thread)
            threads.emplace_back([&](const std::stop_token& stop) { UseFeatures(device, stop, accesses); });
        beside = grab.Count(kDuration);
    }
    state.counters["alone"] = static_cast<double>(alone);
    state.counters["beside"] = static_cast<double>(beside);
    state.counters["accesses"] = static_cast<double>(accesses);
    state.counters["gap_ms"] = grab.longestGap.count() * 1000;
    state.counters["period_ms"] = 1000.0 / kFrameRate;
    state.counters["ratio"] = static_cast<double>(beside) / static_cast<double>(alone);
    state.counters["limit"] = kLeastBesideFeatures;
}
BENCHMARK(FramesBesideFeatures)
    ->ArgNames({"threads", "paced"})
    ->ArgsProduct({{0, 1, 4}, {0, 1}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
