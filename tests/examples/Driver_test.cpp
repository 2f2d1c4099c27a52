/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the example of a CLProtocol driver: applications use a simulated camera through it
 */

#include "CLProtocol/Diagnostics.h"
#include "simulator/CameraRegisters.h"
#include "tests/integration/Machine.h"

namespace {

using integration::Camera;
using integration::CTlFactory;
using integration::DeviceInfoList;

class ExampleOfADriver : public integration::Machine {
protected:
    ExampleOfADriver() { Add("cam0", Camera("17-A/3")); }
    ~ExampleOfADriver() override {
        CTlFactory::GetInstance().ReleaseUnusedTls();
        CLProtocol::ReleaseLibraries();
    }

    scripted::ScopedVariable m_location{"GENICAM_CLPROTOCOL", VANTO_EXAMPLE_DRIVERS};
};

TEST_F(ExampleOfADriver, IsFound) {
    const auto drivers = CLProtocol::GetDrivers();
    ASSERT_EQ(drivers.size(), 1u);
    EXPECT_EQ(drivers[0].refusal, "");
    EXPECT_THAT(drivers[0].path.str(), testing::HasSubstr("ExampleCLProtocol"));
    EXPECT_EQ(drivers[0].version, "1.2");
}

TEST_F(ExampleOfADriver, ServesACamera) {
    const DeviceInfoList list = Enumerate();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].GetSerialNumber(), "17-A/3");
    Vanto::IVantoDevice* const device = CTlFactory::GetInstance().CreateDevice(list[0]);
    device->Open();
    GenApi::CIntegerPtr width = device->GetNodeMap()->GetNode("Width");
    EXPECT_EQ(width->GetValue(), 2048);
    width->SetValue(1024);
    EXPECT_EQ(width->GetValue(), 1024);
    device->Close();
    CTlFactory::GetInstance().DestroyDevice(device);
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), 9600u);
}

TEST_F(ExampleOfADriver, FindsNobodyOnASilentLine) {
    simulator.Unplug("cam0");
    EXPECT_TRUE(Enumerate().empty());
}

}  // namespace
