/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what goes on while a foreign library hangs in its constructor, holding the system's own lock
 */

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "CLProtocol/CLPort.h"
#include "CLProtocol/Diagnostics.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::CCLPort;
using testing::Contains;

constexpr std::chrono::seconds kLong(60);
#ifdef _WIN32
constexpr char kPortList[] = ";";
#else
constexpr char kPortList[] = ":";
#endif

class HangingConstructor : public testing::Test {
public:
    HangingConstructor() {
        CLProtocol::SetPatience({50, 1000});
        scripted::Driver();
        scripted::Serial().SetPorts(1, {"Marlow#Heron#H2048#1"});
    }
    // What was given up goes on once the library is released, and should not do so while the process ends.
    ~HangingConstructor() override {
        m_hanging.Release();
        while (CLProtocol::CountStuckThreads() != 0)
            std::this_thread::yield();
        CLProtocol::SetPatience({});
    }

protected:
    // Whether an action ends by itself; the library is released where it does not.
    bool Ends(const std::function<void()>& action) const {
        auto done = std::async(std::launch::async, action);
        const bool ends = done.wait_for(kLong) == std::future_status::ready;
        if (!ends)
            m_hanging.Release();
        done.get();
        return ends;
    }

    static std::vector<std::string> Ports() {
        GenICam::gcstring_vector ports;
        CCLPort::GetPortIDs(ports);
        return {ports.begin(), ports.end()};
    }

    static std::vector<std::string> Templates() {
        GenICam::gcstring_vector templates;
        CCLPort::GetDeviceIDTemplates(templates);
        return {templates.begin(), templates.end()};
    }

    scripted::Environment m_environment;
    scripted::HangingLibrary m_hanging;
    const scripted::ScopedVariable m_serial{"CLSERIALPATH", scripted::SerialFolder() + kPortList + m_hanging.Folder()};
};

TEST_F(HangingConstructor, KeepsNobodyFromEnumerating) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(Ends([] { EXPECT_THAT(Ports(), Contains("Scripted#Port0")); }));
        EXPECT_TRUE(Ends([] { Templates(); }));
        const scripted::ScopedVariable beside("GENICAM_CLPROTOCOL");
        EXPECT_TRUE(Ends([] { Templates(); }));
    }
}

}  // namespace
