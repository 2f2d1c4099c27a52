/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Functions in random order, by several threads, with random handles, sizes and commands
 */
#include "tests/gentl/RandomCalls.h"
#include "tests/gentl/Consumer.h"

namespace gentl_test {

namespace {

class RandomCalls : public Consumer {
protected:
    RandomCalls() { AddCamera("FrameRate=200"); }

    // So that much of what is called finds something.
    void OpenAll() {
        TL().GCInitLib();
        TL_HANDLE opened = nullptr;
        if (TL().TLOpen(&opened) == GC_ERR_SUCCESS)
            system = opened;
        m_findings.Add(system);
        TL().TLUpdateInterfaceList(system, nullptr, kPatience);
        TL().TLOpenInterface(system, kPort.c_str(), &interface);
        TL().IFOpenDevice(interface, kCamera.c_str(), DEVICE_ACCESS_CONTROL, &device);
        TL().DevGetPort(device, &remote);
        m_stream = Text([&](char* text, std::size_t* size) { return TL().DevGetDataStreamID(device, 0, text, size); });
        TL().DevOpenDataStream(device, m_stream.c_str(), &stream);
        TL().GCRegisterEvent(stream, EVENT_NEW_BUFFER, &event);
        for (void* const handle : {interface, device, remote, stream, event})
            m_findings.Add(handle);
    }

    static bool IsCode(GC_ERROR result) {
        return result == GC_ERR_SUCCESS || (result <= GC_ERR_ERROR && result > GC_ERR_ERROR - 100);
    }

    void CallSome(std::uint32_t count, std::uint32_t seed) {
        RandomCaller caller(m_findings, {kPort, kCamera, m_stream, "", "no such thing"}, seed);
        for (std::uint32_t i = 0; i < count; ++i)
            CallOne(caller, caller.Below(kFunctions));
    }

    // What closes comes rarely, else nothing would ever be open.
    void CallOne(RandomCaller& caller, std::uint32_t number) {
        std::uint32_t index = 0;
#define GENTL_CALL(name)                                                                     \
    if (index++ == number && (std::strstr(#name, "Close") == nullptr || caller.OneIn(16))) { \
        const GC_ERROR result = caller.Call(TL().name);                                      \
        EXPECT_TRUE(IsCode(result)) << #name << " answered " << result;                      \
    }
        GENTL_FUNCTIONS(GENTL_CALL)
#undef GENTL_CALL
    }

    void CloseAll() {
        while (TL().GCCloseLib() == GC_ERR_SUCCESS) {
        }
        system = interface = device = remote = stream = event = nullptr;
    }

    static constexpr std::uint32_t kFunctions = 64;
    std::string m_stream;
    Findings m_findings;
};

TEST_F(RandomCalls, LeaveAProducerThatWorks) {
    const std::uint32_t rounds = NumberFromEnvironment("VANTO_RANDOM_ROUNDS", 4);
    const std::uint32_t seed = NumberFromEnvironment("VANTO_RANDOM_SEED", 1);
    for (std::uint32_t round = seed; round < seed + rounds; ++round) {
        SCOPED_TRACE("VANTO_RANDOM_SEED=" + std::to_string(round));
        OpenAll();
        std::vector<std::jthread> threads;
        for (std::uint32_t i = 0; i < 3; ++i)
            threads.emplace_back([=, this] { CallSome(500, round * 16 + i); });
    }
    CloseAll();
    ASSERT_EQ(TL().GCInitLib(), GC_ERR_SUCCESS);
    OpenStream();
    Announce();
    QueueAll();
    Register();
    Start();
    EXPECT_NE(Next(), nullptr);
    Stop();
}

}  // namespace

}  // namespace gentl_test
