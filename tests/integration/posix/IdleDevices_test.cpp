/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What open devices cost while nobody uses them: no thread, and no wake-up of any
 */

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "ThreadSwitches.h"
#include "tests/integration/Machine.h"
#include "tests/integration/SmallDescription.h"

namespace integration {
namespace {

constexpr int kDevices = 32;

class IdleDevices : public Machine {
protected:
    IdleDevices() {
        m_descriptions.Write("camera.xml", SmallDescription());
        for (int device = 0; device < kDevices; ++device) {
            MarlowSim::CameraOptions camera = Camera(std::to_string(device));
            camera.descriptionFile = m_descriptions / "camera.xml";
            Add("cam" + std::to_string(device), camera);
        }
    }
    ~IdleDevices() override {
        for (Vanto::IVantoDevice* device : m_devices)
            CTlFactory::GetInstance().DestroyDevice(device);
    }

    void OpenAll() {
        for (const CDeviceInfo& info : Enumerate()) {
            m_devices.push_back(CTlFactory::GetInstance().CreateDevice(info));
            m_devices.back()->Open();
            const GenApi::CIntegerPtr width = m_devices.back()->GetNodeMap()->GetNode("Width");
            EXPECT_EQ(width->GetValue(false, true), 2048);
        }
    }
    scripted::TemporaryFolder m_descriptions;
    std::vector<Vanto::IVantoDevice*> m_devices;
};

TEST_F(IdleDevices, CostNoThreadAndNoWakeUp) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "a thread of the sanitizer's wakes up ten times a second";
#endif
    const std::size_t before = ThreadSwitches().size();
    OpenAll();
    ASSERT_EQ(m_devices.size(), static_cast<std::size_t>(kDevices));
    EXPECT_TRUE(WaitForOtherThreads(before)) << ThreadSwitches().size() << " threads instead of " << before;
    const auto switches = ThreadSwitches();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    EXPECT_EQ(ThreadSwitches(), switches);
}

TEST_F(IdleDevices, AreThereAtTheNextAccess) {
    const std::size_t before = ThreadSwitches().size();
    OpenAll();
    EXPECT_TRUE(WaitForOtherThreads(before));
    for (Vanto::IVantoDevice* device : m_devices) {
        const GenApi::CIntegerPtr width = device->GetNodeMap()->GetNode("Width");
        EXPECT_EQ(width->GetValue(false, true), 2048);
    }
}

}  // namespace
}  // namespace integration
