/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What 32 open devices cost while nobody uses them
 *
 * The counter "ratio" is the number of threads with them, and of the times that one of them ran within a second, over
 * the number of threads before; "limit" what it may be at most.
 */

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "GenApi/GenApi.h"
#include "scripted/Scripted.h"
#include "simulator/Simulator.h"
#include "tests/integration/posix/ThreadSwitches.h"
#include "vanto/TlFactory.h"

namespace {

using Vanto::CTlFactory;

constexpr int kDevices = 32;

// Cameras, each on its port, and the place where the factory finds them.
class Machine {
public:
    Machine() {
        std::string ports;
        for (int device = 0; device < kDevices; ++device) {
            const std::string name = "cam" + std::to_string(device);
            MarlowSim::CameraOptions options;
            options.serial = std::to_string(device);
            m_simulator.Add(name, options);
            ports += "<Port><ID>COM_Port#" + name + "</ID><Enabled>1</Enabled></Port>";
        }
        m_surroundings.WritePorts(ports);
    }
    ~Machine() {
        for (Vanto::IVantoDevice* device : m_devices)
            CTlFactory::GetInstance().DestroyDevice(device);
        CTlFactory::GetInstance().ReleaseUnusedTls();
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    std::size_t OpenAll() {
        Vanto::DeviceInfoList list;
        CTlFactory::GetInstance().EnumerateDevices(list);
        for (const Vanto::CDeviceInfo& info : list) {
            m_devices.push_back(CTlFactory::GetInstance().CreateDevice(info));
            m_devices.back()->Open();
        }
        return m_devices.size();
    }

private:
    scripted::Surroundings m_surroundings;
    MarlowSim::Simulator m_simulator{m_surroundings.links.Path()};
    std::vector<Vanto::IVantoDevice*> m_devices;
};

std::uint64_t SumOfSwitches() {
    std::uint64_t sum = 0;
    for (const auto& [thread, switches] : integration::ThreadSwitches())
        sum += switches;
    return sum;
}

void IdleDevices(benchmark::State& state) {
    Machine machine;
    const std::size_t before = integration::ThreadSwitches().size();
    if (machine.OpenAll() != kDevices)
        return state.SkipWithError("not all cameras were found");
    integration::WaitForOtherThreads(before);
    for (auto iteration : state) {
        static_cast<void>(iteration);
        const std::uint64_t switches = SumOfSwitches();
        std::this_thread::sleep_for(std::chrono::seconds(1));
        const double wakeUps = static_cast<double>(SumOfSwitches() - switches);
        state.counters["wake-ups"] = wakeUps;
        const double threads = static_cast<double>(integration::ThreadSwitches().size());
        state.counters["ratio"] = (threads + wakeUps) / static_cast<double>(before);
    }
    state.counters["limit"] = 1;
}
BENCHMARK(IdleDevices)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
