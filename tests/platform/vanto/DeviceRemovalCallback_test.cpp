/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/DeviceRemovalCallback.h"

#include <gtest/gtest.h>

namespace {

using namespace Vanto;

IVantoDevice* const kDevice = reinterpret_cast<IVantoDevice*>(0x1000);  // only compared, never used
IVantoDevice* g_called = nullptr;

void Function(IVantoDevice* device) {
    g_called = device;
}

struct Application {
    void OnRemoved(IVantoDevice* device) { removed = device; }
    IVantoDevice* removed = nullptr;
};

TEST(CDeviceRemovalCallback, CallsAFunction) {
    MakeDeviceRemovalCallback (&Function)(kDevice);
    EXPECT_EQ(g_called, kDevice);
}

TEST(CDeviceRemovalCallback, CallsAMember) {
    Application application;
    make_DeviceRemovalCallback(application, &Application::OnRemoved)(kDevice);
    EXPECT_EQ(application.removed, kDevice);
}

TEST(CDeviceRemovalCallback, ACloneOutlivesItsOriginal) {
    IVantoDevice* called = nullptr;
    std::unique_ptr<CDeviceRemovalCallback> clone;
    {
        const auto original = MakeDeviceRemovalCallback([&](IVantoDevice* device) { called = device; });
        clone = original.Clone();
    }
    (*clone)(kDevice);
    EXPECT_EQ(called, kDevice);
    called = nullptr;
    (*clone->Clone())(kDevice);
    EXPECT_EQ(called, kDevice);
}

}  // namespace
