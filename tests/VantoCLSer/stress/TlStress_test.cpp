/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Threads that enumerate while devices are made, opened, used, closed and destroyed
 */

#include "VantoCLSer/VantoCLSerTL.h"
#include "VantoCLSer/VantoCLSerTlDeviceInfoImpl.h"
#include "tests/VantoCLSer/PortFixture.h"
#include "tests/VantoCLSer/stress/Stress.h"

namespace Vanto {
namespace {

using namespace clser_test;

class TlStress : public PluginTest {
protected:
    TlStress() {
        scripted::Serial().SetPorts(2, {kCamera, "Marlow#Heron#H2048#5678"});
        scripted::Driver().SetRegister(kSerialNumberAddress, "1234");
        WriteConfiguration(PortElement("Scripted#Port0") + PortElement("Scripted#Port1"));
        scripted::DriverScript& driver = scripted::Driver();
        driver.xml[driver.xmlIds] =
            "<RegisterDescription xmlns=\"http://www.genicam.org/GenApi/Version_1_1\" ModelName=\"M\" VendorName=\"V\" "
            "StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" "
            "MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" ToolTip=\"\" "
            "ProductGuid=\"11111111-1111-1111-1111-111111111111\" "
            "VersionGuid=\"22222222-2222-2222-2222-222222222222\"><Category Name=\"Root\"/>" +
            Owner::StringNode() +
            "<IntReg Name=\"Width\"><Address>4096</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device"
            "</pPort><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg><Port Name=\"Device\"/>"
            "</RegisterDescription>";
    }

    static void SetTimeout(IVantoDevice& device, std::int64_t milliseconds) {
        const GenApi::CIntegerPtr timeout = device.GetTLNodeMap()->GetNode("AutoCloseTimeout");
        timeout->SetValue(milliseconds);
    }

    CVantoCLSerTl m_tl;
};

TEST_F(TlStress, EnumeratesWhileADeviceIsUsed) {
    IVantoDevice* const device =
        m_tl.CreateDevice(CVantoCLSerTlDeviceInfoImpl("Scripted#Port0", scripted::FullDeviceId(kCamera)));
    device->Open();
    SetTimeout(*device, 1);
    Stress stress;
    stress.Add([device](std::mt19937&) {
        const GenApi::CIntegerPtr width = device->GetNodeMap()->GetNode("Width");
        width->GetValue(false, true);
    });
    stress.Add([device](std::mt19937& random) {
        const GenApi::CIntegerPtr width = device->GetNodeMap()->GetNode("Width");
        width->SetValue(static_cast<std::int64_t>(random() % 1000));
    });
    stress.Add([this](std::mt19937&) {
        DeviceInfoList list;
        EXPECT_EQ(m_tl.EnumerateDevices(list), 2);
    });
    stress.Add([device](std::mt19937& random) { SetTimeout(*device, static_cast<std::int64_t>(1 + random() % 2)); });
    EXPECT_GT(stress.Run(kShortTime), 0u);
    device->Close();
    m_tl.DestroyDevice(device);
}

TEST_F(TlStress, EnumeratesWhileDevicesAreMadeAndDestroyed) {
    Stress stress;
    stress.Add([this](std::mt19937& random) {
        IVantoDevice* const device =
            m_tl.CreateDevice(CVantoCLSerTlDeviceInfoImpl("Scripted#Port0", scripted::FullDeviceId(kCamera)));
        device->Open();
        SetTimeout(*device, 1);
        const GenApi::CIntegerPtr width = device->GetNodeMap()->GetNode("Width");
        width->SetValue(static_cast<std::int64_t>(random() % 1000));
        if (random() % 2 == 0)
            device->Close();
        m_tl.DestroyDevice(device);
        // A port that was auto-closed when its device went keeps the camera and is not connected again.
        CVantoCLSerPort& port = m_tl.GetOrCreatePort("Scripted#Port0");
        port.Reopen();
        port.Close(false);
    });
    for (int thread = 0; thread < 3; ++thread)
        stress.Add([this](std::mt19937&) {
            DeviceInfoList list;
            m_tl.EnumerateDevices(list);
        });
    EXPECT_GT(stress.Run(kShortTime), 0u);
}

}  // namespace
}  // namespace Vanto
