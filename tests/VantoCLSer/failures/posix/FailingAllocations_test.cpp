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
#include "failing/FailingAllocation.h"
#include "tests/VantoCLSer/device/DeviceFixture.h"

namespace clser_test {
namespace {

using failing::FailingAllocation;
using failing::LiveBlocks;
using Vanto::IVantoDevice;

/// A shortage of memory for a moment, in the operations of a device.
class FailingAllocations : public testing::Test {
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

    // The whole way once, so that what is kept for the rest of the process is there.
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

    /// Runs an operation again and again, with a failure one allocation later each time, until it meets none.
    void FailEach(const std::function<void()>& prepare, const std::function<void()>& operation,
                  const std::function<void()>& cleanUp) {
        for (int rounds = 0; rounds < 3; ++rounds)
            GoTheWholeWay();
        std::size_t index = 0;
        for (bool hasFailed = true; hasFailed && !HasFailure(); ++index) {
            SCOPED_TRACE("allocation " + std::to_string(index));
            const std::ptrdiff_t before = LiveBlocks();
            prepare();
            {
                const FailingAllocation shortage(index);
                Try(operation);
                hasFailed = shortage.HasFailed();
            }
            cleanUp();
            GoTheWholeWay();
            EXPECT_TRUE(HaveBlocksLeft(before)) << LiveBlocks() - before << " more than before";
        }
        EXPECT_GT(index, 1u);
        RecordProperty("allocations", static_cast<int>(index));
    }

    // Threads that have ended give their last memory back in their own time.
    static bool HaveBlocksLeft(std::ptrdiff_t expected) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (LiveBlocks() != expected) {
            if (std::chrono::steady_clock::now() > end)
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }

    // One error of a kind that callers expect, or none where the memory was not needed.
    static void Try(const std::function<void()>& operation) {
        try {
            operation();
        } catch (const std::bad_alloc&) {
        } catch (const GenICam::GenericException&) {
        }
    }

    scripted::Environment m_environment;
    scripted::TemporaryFolder m_folder;
    scripted::ScopedVariable m_bindings{"VANTO_CL_BINDINGS", m_folder.Path()};
    scripted::ScopedVariable m_use{"VANTO_USE_TL"};
    std::unique_ptr<Vanto::CVantoCLSerTl> m_tl = std::make_unique<Vanto::CVantoCLSerTl>();
    IVantoDevice* m_device = nullptr;
};

TEST_F(FailingAllocations, OfOpening) {
    FailEach([&] { m_device = Create(); }, [&] { m_device->Open(); },
             [&] {
                 if (m_device->IsOpen())
                     m_device->Close();
                 m_device->Open();
                 EXPECT_EQ(Width(*m_device)->GetValue(false, true), 7);
                 Destroy();
             });
}

TEST_F(FailingAllocations, OfReading) {
    FailEach([&] { CreateAndOpen(); }, [&] { Width(*m_device)->GetValue(false, true); }, [&] { Destroy(); });
}

TEST_F(FailingAllocations, OfWriting) {
    FailEach([&] { CreateAndOpen(); }, [&] { Width(*m_device)->SetValue(7); }, [&] { Destroy(); });
}

}  // namespace
}  // namespace clser_test
