/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Calls functions of the GenTL producer as lines say: "DSQueueBuffer 17" calls it with the arguments of number 17
 *
 * "Open 3" opens system, interface and device first; 4 the stream and its event as well, with buffers. Handles are any
 * that were given out, or none; sizes are true, so that what is written behind them meets the sanitizer.
 */

#include <cstdlib>
#include <sstream>
#include <string>

#include "scripted/Scripted.h"
#include "simulator/Simulator.h"
#include "tests/gentl/RandomCalls.h"

// The machine's libraries and the lower layers are not compiled for the sanitizer, which follows vectors' ends.
extern "C" const char* __asan_default_options() {
    return "detect_container_overflow=0";
}

namespace {

using gentl_test::Findings;
using gentl_test::RandomCaller;

constexpr const char* kPort = "COM_Port#cam0";
constexpr std::size_t kMostCalls = 60;
constexpr int kEverything = 4;

/// A camera with a frame grabber, for as long as the fuzzer runs.
struct Machine {
    Machine() {
        simulator.Add("cam0", {});
        surroundings.WritePorts(std::string("<Port><ID>") + kPort +
                                "</ID><Enabled>1</Enabled><Manufacturer>Marlow</Manufacturer><DeviceSpecificString>"
                                "SaperaSimulated;FrameRate=200</DeviceSpecificString></Port>");
    }
    scripted::Surroundings surroundings;
    MarlowSim::Simulator simulator{surroundings.links.Path()};
};

/// One life of the library. What is opened, closed or not, ends with it.
class Life {
public:
    Life() : m_caller(m_findings, {kPort, kPort, "Marlow-H2048-1-Stream", "", "no such thing"}, 0) { GCInitLib(); }
    ~Life() { GCCloseLib(); }
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;

    void Open(int level) {
        void* handle = nullptr;
        if (level < 1 || TLOpen(&handle) != GC_ERR_SUCCESS)
            return;
        Keep(handle);
        if (level < 2 || TLOpenInterface(handle, kPort, &handle) != GC_ERR_SUCCESS)
            return;
        Keep(handle);
        if (level < 3 || IFOpenDevice(handle, kPort, DEVICE_ACCESS_CONTROL, &handle) != GC_ERR_SUCCESS)
            return;
        Keep(handle);
        void* remote = nullptr;
        DevGetPort(handle, &remote);
        Keep(remote);
        if (level >= kEverything)
            OpenStream(handle);
    }

    void Call(const std::string& name, std::uint32_t number) {
        m_caller.Reseed(number);
#define GENTL_CALL(function) \
    if (name == #function)   \
        Check(m_caller.Call(function));
        GENTL_FUNCTIONS(GENTL_CALL)
#undef GENTL_CALL
    }

private:
    void Keep(void* handle) {
        m_findings.Add(handle);
    }

    void OpenStream(DEV_HANDLE device) {
        char id[256];
        std::size_t size = sizeof id;
        void* stream = nullptr;
        if (DevGetDataStreamID(device, 0, id, &size) != GC_ERR_SUCCESS ||
            DevOpenDataStream(device, id, &stream) != GC_ERR_SUCCESS)
            return;
        Keep(stream);
        void* handle = nullptr;
        if (GCRegisterEvent(stream, EVENT_NEW_BUFFER, &handle) == GC_ERR_SUCCESS)
            Keep(handle);
        for (int count = 0; count < 3; ++count)
            if (DSAllocAndAnnounceBuffer(stream, 4096, nullptr, &handle) == GC_ERR_SUCCESS)
                Keep(handle);
    }

    static void Check(GC_ERROR result) {
        if (result != GC_ERR_SUCCESS && (result > GC_ERR_ERROR || result <= GC_ERR_ERROR - 100))
            std::abort();
    }

    Findings m_findings;
    RandomCaller m_caller;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Machine& machine = *new Machine;
    static_cast<void>(machine);
    Life life;
    std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
    std::string name;
    std::uint32_t number = 0;
    for (std::size_t calls = 0; calls < kMostCalls && lines >> name >> number; ++calls) {
        if (name == "Open")
            life.Open(static_cast<int>(number % (kEverything + 1)));
        else
            life.Call(name, number);
    }
    return 0;
}
