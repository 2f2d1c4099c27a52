/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a consumer of the GenTL producer pays beyond the SDK's own classes, both measured in turns
 *
 * The counter "ratio" is what was measured, "limit" what it may be: at least for frames, at most for reads. "cpu_us" is
 * processor time a frame, of all threads.
 */

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "../PreparedGrab.h"
#include "GenApi/GenApi.h"
#include "GenTLProducer.h"
#include "scripted/Scripted.h"
#include "simulator/Simulator.h"
#include "vanto/StreamGrabber.h"
#include "vanto/TlFactory.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kBuffers = 8;
constexpr int kFrames = 2000;
constexpr std::uint64_t kPatience = 30000;  // ms
constexpr std::int64_t kSide = 1024;        // pixels of 8 bits: 1 MiB

struct Cost {
    double seconds = 0;
    double processor = 0;  // seconds
};

template <class Action>
Cost CostOf(const Action& action) {
    const std::clock_t processor = std::clock();
    const auto begin = Clock::now();
    action();
    return {std::chrono::duration<double>(Clock::now() - begin).count(),
            static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC};
}

/// Of the round that a machine with other work disturbed least.
Cost FastestOf(const std::vector<Cost>& costs) {
    return *std::ranges::min_element(costs, {}, &Cost::seconds);
}

/// The camera of the port "bare", as an application of the SDK has it.
class Bare {
public:
    Bare() : m_device(Open("1")) {}
    ~Bare() {
        Vanto::CTlFactory::GetInstance().DestroyDevice(m_device);
        Vanto::CTlFactory::GetInstance().ReleaseUnusedTls();
    }
    Bare(const Bare&) = delete;
    Bare& operator=(const Bare&) = delete;

    /// Opens a camera whose images are 1 MiB.
    static Vanto::IVantoDevice* Open(const std::string& serialNumber) {
        Vanto::CDeviceInfo info;
        info.SetDeviceClass("MarlowCameraLink").SetPropertyValue("SerialNumber", serialNumber);
        Vanto::IVantoDevice* const device = Vanto::CTlFactory::GetInstance().CreateDevice(info);
        device->Open();
        for (const char* const name : {"Width", "Height"})
            GenApi::CIntegerPtr(device->GetNodeMap()->GetNode(name))->SetValue(kSide);
        return device;
    }

    void Read(std::uint64_t address, std::span<std::uint8_t> bytes) const {
        const GenApi::CPortPtr port(m_device->GetNodeMap()->GetNode("Device"));
        port->Read(bytes.data(), static_cast<std::int64_t>(address), static_cast<std::int64_t>(bytes.size()));
    }

    Cost OfFrames() const {
        const bench::PreparedGrab grab(*m_device);
        grab.QueueAll();
        return CostOf([&] { grab.Take(kFrames); });
    }

private:
    Vanto::IVantoDevice* const m_device;
};

/// The camera of the port "gentl", as a consumer of the producer has it.
class Consumer {
public:
    Consumer() {
        Vanto::CTlFactory::GetInstance().DestroyDevice(Bare::Open("2"));
        TL_HANDLE system = nullptr;
        IF_HANDLE interface = nullptr;
        m_tl.Check(m_tl.GCInitLib());
        m_tl.Check(m_tl.TLOpen(&system));
        m_tl.Check(m_tl.TLOpenInterface(system, "COM_Port#gentl", &interface));
        m_tl.Check(m_tl.IFOpenDevice(interface, "2", DEVICE_ACCESS_CONTROL, &m_device));
        m_tl.Check(m_tl.DevGetPort(m_device, &m_port));
    }
    ~Consumer() { m_tl.GCCloseLib(); }
    Consumer(const Consumer&) = delete;
    Consumer& operator=(const Consumer&) = delete;

    void Read(std::uint64_t address, std::span<std::uint8_t> bytes) const {
        std::size_t size = bytes.size();
        m_tl.Check(m_tl.GCReadPort(m_port, address, bytes.data(), &size));
    }

    /// Where the camera's description lies, which the producer serves itself.
    std::uint64_t OwnAddress() const {
        std::uint64_t address = 0;
        std::size_t size = sizeof address;
        INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
        m_tl.Check(m_tl.GCGetPortURLInfo(m_port, 0, URL_INFO_FILE_REGISTER_ADDRESS, &type, &address, &size));
        return address;
    }

    Cost OfFrames() const {
        std::array<char, 256> id{};
        std::size_t size = id.size();
        m_tl.Check(m_tl.DevGetDataStreamID(m_device, 0, id.data(), &size));
        DS_HANDLE stream = nullptr;
        EVENT_HANDLE event = nullptr;
        m_tl.Check(m_tl.DevOpenDataStream(m_device, id.data(), &stream));
        m_tl.Check(m_tl.GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event));
        for (std::size_t index = 0; index < kBuffers; ++index) {
            BUFFER_HANDLE buffer = nullptr;
            m_tl.Check(m_tl.DSAllocAndAnnounceBuffer(stream, kSide * kSide, nullptr, &buffer));
            m_tl.Check(m_tl.DSQueueBuffer(stream, buffer));
        }
        m_tl.Check(m_tl.DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE));
        const Cost cost = CostOf([&] {
            for (int taken = 0; taken < kFrames; ++taken) {
                EVENT_NEW_BUFFER_DATA data{};
                size = sizeof data;
                m_tl.Check(m_tl.EventGetData(event, &data, &size, kPatience));
                m_tl.Check(m_tl.DSQueueBuffer(stream, data.BufferHandle));
            }
        });
        m_tl.Check(m_tl.DSStopAcquisition(stream, ACQ_STOP_FLAGS_DEFAULT));
        m_tl.Check(m_tl.DSClose(stream));
        return cost;
    }

private:
    const GenTLProducer m_tl{VANTO_GENTL_PRODUCER};
    DEV_HANDLE m_device = nullptr;
    PORT_HANDLE m_port = nullptr;
};

/// Two cameras that are alike, each with a frame grabber of so many frames a second.
struct Machine {
    explicit Machine(std::int64_t frameRate) {
        std::string ports;
        for (const auto& [name, serial] : {std::pair{"bare", "1"}, std::pair{"gentl", "2"}}) {
            MarlowSim::CameraOptions options;
            options.serial = serial;
            simulator.Add(name, options);
            ports += std::string("<Port><ID>COM_Port#") + name +
                     "</ID><Enabled>1</Enabled><Manufacturer>Marlow</Manufacturer><DeviceSpecificString>"
                     "SaperaSimulated;Pattern=Black;FrameRate=" +
                     std::to_string(frameRate) + "</DeviceSpecificString></Port>";
        }
        surroundings.WritePorts(ports);
        consumer = std::make_unique<Consumer>();
        bare = std::make_unique<Bare>();
    }

    scripted::Surroundings surroundings;
    MarlowSim::Simulator simulator{surroundings.links.Path()};
    std::unique_ptr<Consumer> consumer;
    std::unique_ptr<Bare> bare;
};

// 0 frames a second are as many as the frame grabber makes.
void Frames(benchmark::State& state) {
    const int kRounds = state.range(0) == 0 ? 25 : 3;
    const Machine machine(state.range(0));
    std::vector<Cost> bare;
    std::vector<Cost> ours;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (int round = 0; round < kRounds; ++round) {
            bare.push_back(machine.bare->OfFrames());
            ours.push_back(machine.consumer->OfFrames());
        }
    }
    const Cost theirs = FastestOf(bare);
    const Cost own = FastestOf(ours);
    state.counters["bare_fps"] = kFrames / theirs.seconds;
    state.counters["ours_fps"] = kFrames / own.seconds;
    state.counters["bare_cpu_us"] = theirs.processor / kFrames * 1e6;
    state.counters["ours_cpu_us"] = own.processor / kFrames * 1e6;
    state.counters["ratio"] = theirs.seconds / own.seconds;
    state.counters["limit"] = 0.98;
}
BENCHMARK(Frames)->Arg(1000)->Arg(0)->Iterations(1)->Unit(benchmark::kMillisecond);

/// One register of the camera: an exchange over the serial line, and what each adds to it. Beside it a read that ends
/// in the producer, as the line's own time varies by more.
void ReadARegister(benchmark::State& state) {
    constexpr int kRounds = 1000;
    constexpr int kReads = 10;
    const Machine machine(1);
    std::array<std::uint8_t, 4> word{};
    const auto costOf = [&](const auto& one, std::uint64_t address) {
        return CostOf([&] {
            for (int read = 0; read < kReads; ++read)
                one.Read(address, word);
        });
    };
    const std::uint64_t own = machine.consumer->OwnAddress();
    std::vector<Cost> bare;
    std::vector<Cost> ours;
    std::vector<Cost> withoutLine;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (int round = 0; round < kRounds; ++round) {
            bare.push_back(costOf(*machine.bare, 0));
            ours.push_back(costOf(*machine.consumer, 0));
            withoutLine.push_back(costOf(*machine.consumer, own));
        }
    }
    const double bareTime = FastestOf(bare).seconds / kReads;
    const double ourTime = FastestOf(ours).seconds / kReads;
    state.counters["bare_ns"] = bareTime * 1e9;
    state.counters["ours_ns"] = ourTime * 1e9;
    state.counters["overhead_ns"] = (ourTime - bareTime) * 1e9;
    state.counters["no_line_ns"] = FastestOf(withoutLine).seconds / kReads * 1e9;
    state.counters["ratio"] = ourTime / bareTime;
    state.counters["limit"] = 1.1;
}
BENCHMARK(ReadARegister)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
