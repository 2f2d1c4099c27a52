/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Devices made, opened, closed and destroyed over and over: the memory in use stays the same
 */

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "tests/VantoCLSer/device/DeviceFixture.h"

namespace clser_test {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kHasOwnMemory = false;  // sanitizers keep freed memory, and find leaks by themselves
constexpr int kUsualCycles = 500;
#else
constexpr bool kHasOwnMemory = true;
constexpr int kUsualCycles = 2000;
#endif
constexpr std::size_t kAllowedGrowth = 1024;  // KiB, in half of the cycles

// VANTO_TEST_CYCLES sets more.
int Cycles() {
    const char* text = std::getenv("VANTO_TEST_CYCLES");
    return text != nullptr ? std::atoi(text) : kUsualCycles;
}

std::size_t ResidentKiB() {
    std::ifstream file("/proc/self/status");
    std::string word;
    std::size_t size = 0;
    while (file >> word && word != "VmRSS:") {
    }
    file >> size;
    return size;
}

class DeviceCycles : public DeviceTest {
protected:
    void Run(int cycles) {
        for (int cycle = 0; cycle < cycles; ++cycle) {
            Vanto::IVantoDevice* const device = CreateDevice();
            device->Open();
            ASSERT_EQ(RateRegister(), 23);
            device->Close();
            m_tl->DestroyDevice(device);
            ForgetRecords();
        }
    }

    // What the scripts and the log note of each cycle.
    void ForgetRecords() {
        m_log.Clear();
        scripted::DriverScript& driver = scripted::Driver();
        scripted::SerialScript& serial = scripted::Serial();
        const std::scoped_lock lock(driver.mutex, serial.mutex);
        driver.calls.clear();
        driver.rates.clear();
        serial.ports[0].output.clear();
        serial.ports[0].rates.clear();
    }
};

TEST_F(DeviceCycles, KeepTheMemoryFlat) {
    const int cycles = Cycles();
    ASSERT_GT(cycles, 1);
    Run(cycles / 2);
    const std::size_t before = ResidentKiB();
    Run(cycles - cycles / 2);
    const std::size_t after = ResidentKiB();
    std::cout << cycles << " cycles: " << before << " KiB after half of them, " << after << " KiB at the end"
              << (kHasOwnMemory ? "\n" : ", not compared under a sanitizer\n");
    EXPECT_GT(before, 0u);
    if (kHasOwnMemory) {
        EXPECT_LE(after, before + kAllowedGrowth);
    }
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
}

}  // namespace
}  // namespace clser_test
