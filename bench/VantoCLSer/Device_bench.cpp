/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What an application waits for: the first feature value of a new device, and a port that was closed for inactivity
 *
 * The counter "ratio" is what was measured, "limit" what it may be at most. Lines are paced as real ones; their time
 * on the line is what the packets that came and went take at the rates at which they did.
 */

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "GenApi/GenApi.h"
#include "gencp/BaudRate.h"
#include "gencp/Protocol.h"
#include "scripted/Scripted.h"
#include "simulator/Simulator.h"
#include "vanto/TlFactory.h"

namespace {

using Vanto::CTlFactory;
using Vanto::IVantoDevice;
using Seconds = std::chrono::duration<double>;

constexpr std::uint32_t kFast = 921600;
constexpr char kCamera[] = "cam0";
constexpr char kPortId[] = "COM_Port#cam0";

// A camera on a port, and the place where the factory finds it.
class Machine {
public:
    explicit Machine(std::size_t descriptionSize = 0) {
        MarlowSim::CameraOptions options;
        options.paced = true;
        options.descriptionSize = descriptionSize;
        simulator.Add(kCamera, options);
        m_surroundings.WritePorts(std::string("<Port><ID>") + kPortId + "</ID><Enabled>1</Enabled></Port>");
        Vanto::DeviceInfoList list;
        if (CTlFactory::GetInstance().EnumerateDevices(list) == 1)
            record = list[0];
    }
    ~Machine() {
        if (device != nullptr)
            CTlFactory::GetInstance().DestroyDevice(device);
        CTlFactory::GetInstance().ReleaseUnusedTls();
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    void Create() { device = CTlFactory::GetInstance().CreateDevice(record); }
    void Destroy() { CTlFactory::GetInstance().DestroyDevice(std::exchange(device, nullptr)); }
    std::int64_t Width() const {
        const GenApi::CIntegerPtr node = device->GetNodeMap()->GetNode("Width");
        return node->GetValue(false, true);
    }
    void ForgetDescription() const {
        for (const auto& file : std::filesystem::directory_iterator(m_surroundings.cache.Path()))
            std::filesystem::remove(file.path());
    }
    double LineTime() const { return Seconds(simulator.StatisticsOf(kCamera).lineTime).count(); }
    // Of the packets that carry the description, at the highest rate.
    double LineTimeOfDescription() const {
        const std::size_t size = simulator.DescriptionFile(kCamera).size();
        const std::size_t packets = (size + gencp::kMaxReadData - 1) / gencp::kMaxReadData;
        const std::size_t overhead = 2 * gencp::kHeaderSize + gencp::kRangeSize;
        return Seconds(gencp::TransferTime(size + packets * overhead, kFast)).count();
    }
    void CloseForInactivity() const {
        const GenApi::CIntegerPtr timeout = device->GetTLNodeMap()->GetNode("AutoCloseTimeout");
        timeout->SetValue(1);
        while (!CTlFactory::GetInstance().IsDeviceAccessible(record))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        timeout->SetValue(0);
    }

    Vanto::CDeviceInfo record;
    IVantoDevice* device = nullptr;

private:
    scripted::Surroundings m_surroundings;

public:
    MarlowSim::Simulator simulator{m_surroundings.links.Path()};
};

template <class Operation>
double Measure(const Operation& operation) {
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

// From CreateDevice to the first value with the description cached, over the time on the line of all that was read.
void FirstValue(benchmark::State& state) {
    Machine machine;
    machine.Create();
    machine.Destroy();
    double best = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        machine.simulator.ResetStatistics(kCamera);
        const double seconds = Measure([&] {
            machine.Create();
            benchmark::DoNotOptimize(machine.Width());
        });
        const double ratio = seconds / machine.LineTime();
        machine.Destroy();
        state.SetIterationTime(seconds);
        best = best == 0 ? ratio : std::min(best, ratio);
    }
    state.counters["ratio"] = best;
    state.counters["limit"] = 1.3;
}
BENCHMARK(FirstValue)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

// The same without the cache. All but the line time of other registers, and of the change to the highest rate and back,
// counts as time of the description: waiting, unpacking, the cache on disk, the node map.
void FirstValueWithoutCache(benchmark::State& state) {
    Machine machine(static_cast<std::size_t>(state.range(0)));
    machine.Create();
    machine.Destroy();
    const double description = machine.LineTimeOfDescription();
    double best = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        machine.ForgetDescription();
        machine.simulator.ResetStatistics(kCamera);
        const double seconds = Measure([&] {
            machine.Create();
            benchmark::DoNotOptimize(machine.Width());
        });
        const double ratio = (seconds - (machine.LineTime() - description)) / description;
        machine.Destroy();
        state.SetIterationTime(seconds);
        best = best == 0 ? ratio : std::min(best, ratio);
    }
    state.counters["ratio"] = best;
    state.counters["limit"] = 1.1;
}
BENCHMARK(FirstValueWithoutCache)
    ->ArgName("bytes")
    ->Arg(0)
    ->Arg(200'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(3);

// What the first access after an auto-close takes longer than another, in register reads.
void Reopen(benchmark::State& state) {
    Machine machine;
    machine.Create();
    machine.device->Open();
    if (machine.simulator.BitsPerSecond(kCamera) != kFast)
        return state.SkipWithError("the camera is not at the highest rate");
    std::vector<double> reads;
    std::vector<double> reopenings;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        reads.push_back(Measure([&] { benchmark::DoNotOptimize(machine.Width()); }));
        machine.CloseForInactivity();
        const double seconds = Measure([&] { benchmark::DoNotOptimize(machine.Width()); });
        state.SetIterationTime(seconds);
        reopenings.push_back(seconds - reads.back());
    }
    state.counters["ratio"] = Median(reopenings) / Median(reads);
    state.counters["limit"] = 3;
}
BENCHMARK(Reopen)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(50);

}  // namespace
