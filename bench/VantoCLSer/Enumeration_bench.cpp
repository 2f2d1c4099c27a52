/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What enumerating costs: the time of one enumeration over the time of its probes, each measured on its own
 *
 * The counter "ratio" is what was measured, "limit" what it may be at most.
 */

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "CLProtocol/CLPort.h"
#include "scripted/Scripted.h"
#include "simulator/Simulator.h"
#include "vanto/TlFactory.h"

namespace {

using CLProtocol::CCLPort;
using Vanto::CTlFactory;
using Vanto::gcstring;
using Vanto::gcstring_vector;
using Seconds = std::chrono::duration<double>;

constexpr int kTimeout = 400;  // milliseconds, as enumeration probes

// Cameras on ports that are all enabled, and the place where the factory finds them.
class Machine {
public:
    Machine(std::int64_t cameras, bool isPaced) {
        std::string configuration;
        for (std::int64_t number = 0; number < cameras; ++number) {
            MarlowSim::CameraOptions options;
            options.paced = isPaced;
            const std::string name = "cam" + std::to_string(number);
            m_simulator.Add(name, options);
            portIds.push_back("COM_Port#" + name);
            configuration += "<Port><ID>" + portIds.back() + "</ID><Enabled>1</Enabled></Port>";
        }
        m_surroundings.WritePorts(configuration);
    }

    std::vector<std::string> portIds;

private:
    scripted::Surroundings m_surroundings;
    MarlowSim::Simulator m_simulator{m_surroundings.links.Path()};
};

template <class Operation>
double Measure(const Operation& operation) {
    const auto begin = std::chrono::steady_clock::now();
    operation();
    return Seconds(std::chrono::steady_clock::now() - begin).count();
}

gcstring TemplateOfTheMaker() {
    gcstring_vector templates;
    CCLPort::GetDeviceIDTemplates(templates);
    for (const gcstring& text : templates) {
        if (text.str().ends_with("#Marlow"))
            return text;
    }
    return {};
}

void Enumerate(benchmark::State& state) {
    const Machine machine(state.range(0), state.range(1) != 0);
    const gcstring deviceIdTemplate = TemplateOfTheMaker();
    double best = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        double probes = 0;
        for (const std::string& portId : machine.portIds)
            probes += Measure([&] { CCLPort::ProbeDevice(portId, deviceIdTemplate, kTimeout); });
        Vanto::DeviceInfoList list;
        const double enumeration = Measure([&] { CTlFactory::GetInstance().EnumerateDevices(list); });
        if (list.size() != machine.portIds.size())
            return state.SkipWithError("not all cameras were found");
        state.SetIterationTime(enumeration);
        best = best == 0 ? enumeration / probes : std::min(best, enumeration / probes);
    }
    CTlFactory::GetInstance().ReleaseUnusedTls();
    state.counters["ratio"] = best;
    state.counters["limit"] = 1.1;
}
BENCHMARK(Enumerate)
    ->ArgNames({"cameras", "paced"})
    ->Args({32, 1})
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(3);

}  // namespace
