/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The first handle of a removal callback in a process, in a process of its own
 */

#include "tests/VantoCLSer/device/DeviceFixture.h"
#include "vanto/DeviceRemovalCallback.h"

namespace clser_test {

class FirstRemovalHandle : public DeviceTest {};

TEST_F(FirstRemovalHandle, Is1001) {
    const auto callback = Vanto::MakeDeviceRemovalCallback([](Vanto::IVantoDevice*) {});
    Vanto::IVantoDevice* const device = CreateDevice();
    device->Open();
    EXPECT_EQ(device->RegisterRemovalCallback(callback), 1001u);
    EXPECT_EQ(device->RegisterRemovalCallback(callback), 1002u);
    EXPECT_EQ(Logged(Vanto::tracelog::kDebug, "Registered removal callback with handle 1001"), 1u);
    m_tl->DestroyDevice(device);
}

}  // namespace clser_test
