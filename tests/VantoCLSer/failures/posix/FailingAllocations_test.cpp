/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Each allocation of each operation fails in turn: one error, nothing is left behind, and the next attempt works
 */

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "VantoCLSer/VantoCLSerTL.h"
#include "VantoCLSer/VantoCLSerTlDeviceInfoImpl.h"
#include "failing/EachAllocation.h"
#include "tests/VantoCLSer/device/DeviceFixture.h"

namespace Vanto {

extern "C" {
int GetTLInfoList(TlInfoList& list);
ITransportLayer* Create(const CTlInfo& info);
void Destroy(ITransportLayer* tl);
}

}  // namespace Vanto

namespace clser_test {
namespace {

using failing::FailingAllocation;
using failing::Step;
using failing::Try;
using Vanto::IVantoDevice;

/// A shortage of memory in the operations of a device, for a moment or to their end.
class FailingAllocations : public testing::TestWithParam<failing::Shortage> {
protected:
    FailingAllocations() {
        scripted::Serial().SetPorts(1, {kCamera});
        scripted::DriverScript& driver = scripted::Driver();
        driver.xml[driver.xmlIds] = Description(BaudRateNodes(AllRates()));
        driver.SetRegister(kSerialNumberAddress, "1234");
        driver.SetRegister(kRateAddress, std::string("\0\0\0\x0f", 4));
        m_folder.Write("PortConfiguration_x64.xml",
                       "<CLBindings><Port><ID>Scripted#Port0</ID><Enabled>true</Enabled></Port></CLBindings>");
    }

    IVantoDevice* Create() {
        Vanto::CVantoCLSerTlDeviceInfoImpl info(kPortId, scripted::FullDeviceId(kCamera));
        info.GetInfoImpl().ClearAccessFlags();
        return m_tl->CreateDevice(info);
    }
    void CreateAndOpen() {
        m_device = Create();
        m_device->Open();
    }
    void Destroy() { m_tl->DestroyDevice(std::exchange(m_device, nullptr)); }
    static GenApi::CIntegerPtr Width(IVantoDevice& device) { return device.GetNodeMap()->GetNode("Width"); }

    void GoTheWholeWay() {
        Vanto::DeviceInfoList list;
        EXPECT_EQ(m_tl->EnumerateDevices(list), 1);
        IVantoDevice* const device = Create();
        device->Open();
        Width(*device)->SetValue(7);
        EXPECT_EQ(Width(*device)->GetValue(false, true), 7);
        EXPECT_NE(device->GetTLNodeMap(), nullptr);
        device->Close();
        m_tl->DestroyDevice(device);
        EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
        EXPECT_FALSE(scripted::Serial().Port(0).isOpen);
        scripted::Driver().calls.clear();
    }

    void FailEach(const Step& prepare, const Step& operation, const Step& cleanUp) {
        EXPECT_GT(failing::EachAllocation(GetParam(), [this] { GoTheWholeWay(); }).Fail(prepare, operation, cleanUp),
                  1u);
    }

    static bool IsClosedForInactivity() {
        return test_support::WaitUntil([] { return !scripted::Serial().Port(0).isOpen; }, std::chrono::seconds(10));
    }

    scripted::Environment m_environment;
    scripted::TemporaryFolder m_folder;
    scripted::ScopedVariable m_bindings{"VANTO_CL_BINDINGS", m_folder.Path()};
    scripted::ScopedVariable m_use{"VANTO_USE_TL"};
    std::unique_ptr<Vanto::CVantoCLSerTl> m_tl = std::make_unique<Vanto::CVantoCLSerTl>();
    IVantoDevice* m_device = nullptr;
};

TEST_P(FailingAllocations, OfOpening) {
    FailEach([&] { m_device = Create(); }, [&] { m_device->Open(); },
             [&] {
                 if (m_device->IsOpen())
                     m_device->Close();
                 m_device->Open();
                 EXPECT_EQ(Width(*m_device)->GetValue(false, true), 7);
                 Destroy();
             });
}

TEST_P(FailingAllocations, OfReading) {
    FailEach([&] { CreateAndOpen(); }, [&] { Width(*m_device)->GetValue(false, true); }, [&] { Destroy(); });
}

TEST_P(FailingAllocations, OfWriting) {
    FailEach([&] { CreateAndOpen(); }, [&] { Width(*m_device)->SetValue(7); }, [&] { Destroy(); });
}

TEST_P(FailingAllocations, OfClosing) {
    FailEach([&] { CreateAndOpen(); }, [&] { m_device->Close(); }, [&] { Destroy(); });
}

TEST_P(FailingAllocations, OfEnumerating) {
    Vanto::DeviceInfoList list;
    FailEach([&] { list.clear(); }, [&] { m_tl->EnumerateDevices(list); }, [&] { list = {}; });
}

TEST_P(FailingAllocations, OfCreating) {
    FailEach([] {}, [&] { m_device = Create(); },
             [&] {
                 if (m_device != nullptr)
                     Destroy();
             });
}

TEST_P(FailingAllocations, OfTheTLMap) {
    FailEach([&] { CreateAndOpen(); }, [&] { m_device->GetTLNodeMap(); },
             [&] {
                 const GenApi::CIntegerPtr timeout = m_device->GetTLNodeMap()->GetNode("AutoCloseTimeout");
                 timeout->SetValue(1);
                 EXPECT_TRUE(IsClosedForInactivity());
                 Destroy();
             });
}

TEST_P(FailingAllocations, OfMakingTheTransportLayer) {
    Vanto::TlInfoList list;
    Vanto::GetTLInfoList(list);
    Vanto::ITransportLayer* made = nullptr;
    FailEach([] {}, [&] { made = Vanto::Create(list[0]); }, [&] { Vanto::Destroy(std::exchange(made, nullptr)); });
}

// What is no exception of GenICam's leaves the enumeration as it is, and is not logged.
TEST_P(FailingAllocations, LeaveTheEnumerationAsTheyAre) {
    for (int rounds = 0; rounds < 3; ++rounds)
        GoTheWholeWay();
    Vanto::DeviceInfoList list;
    const Vanto::tracelog::LogRecorder log("Vanto.*:trace");
    int left = 0;
    for (std::size_t index = 0; index < 100; ++index) {
        const FailingAllocation shortage(index, GetParam());
        try {
            m_tl->EnumerateDevices(list);
        } catch (const std::bad_alloc&) {
            ++left;
        }
    }
    EXPECT_GT(left, 0);
    EXPECT_EQ(log.CountFormat("Exception in %s while enumerating devices. '%s'"), 0U);
}

INSTANTIATE_TEST_SUITE_P(Once, FailingAllocations, testing::Values(failing::Shortage::kOnce));
INSTANTIATE_TEST_SUITE_P(FromThenOn, FailingAllocations, testing::Values(failing::Shortage::kFromThenOn));

}  // namespace
}  // namespace clser_test
