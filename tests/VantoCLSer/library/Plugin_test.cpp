/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the plug-in's file, loaded by hand and by the factory
 */

#include "os/Library.h"
#include "tests/VantoCLSer/Fixture.h"
#include "vanto/TlFactory.h"

namespace Vanto {
namespace {

using namespace clser_test;

class Plugin : public PluginTest {
protected:
    Plugin() {
        scripted::Serial().SetPorts(2, {kCamera, ""});
        WriteConfiguration(PortElement("Scripted#Port0"));
    }

    static constexpr char kDeviceClass[] = "MarlowCameraLink";
};

TEST_F(Plugin, IsLoadedAndUnloadedByHand) {
    for (int round = 0; round < 2; ++round) {
        const os::Library library(VANTO_TEST_PLUGIN);
        TlInfoList list;
        EXPECT_EQ(library.Get<GetTLInfoListFunction>("GetTLInfoList")(list), 1);
        ITransportLayer* const tl = library.Get<CreateFunction>("Create")(list[0]);
        ASSERT_NE(tl, nullptr);
        DeviceInfoList devices;
        EXPECT_EQ(tl->EnumerateDevices(devices), 1);
        library.Get<DestroyFunction>("Destroy")(tl);
    }
    EXPECT_FALSE(scripted::Serial().Port(0).isOpen);
}

TEST_F(Plugin, IsFoundByTheFactory) {
    TlInfoList list;
    CTlFactory::GetInstance().EnumerateTls(list);
    std::size_t found = 0;
    for (const CTlInfo& info : list)
        found += info.GetFullName() == "Camera Link/MarlowCameraLink 3.2.2.3032" ? 1 : 0;
    EXPECT_EQ(found, 1u);
}

TEST_F(Plugin, IsCreatedByTheFactory) {
    ITransportLayer* const tl = CTlFactory::GetInstance().CreateTl(kDeviceClass);
    ASSERT_NE(tl, nullptr);
    EXPECT_EQ(tl->GetTlInfo().GetFriendlyName(), "Camera Link");
    CTlFactory::GetInstance().ReleaseTl(tl);
}

TEST_F(Plugin, IsEnumeratedByTheFactory) {
    DeviceInfoList devices;
    ASSERT_EQ(CTlFactory::GetInstance().EnumerateDevices(devices), 1);
    EXPECT_EQ(devices[0].GetFriendlyName(), "Marlow H2048 (1234)");
    EXPECT_EQ(devices[0].GetDeviceClass(), kDeviceClass);
    CTlFactory::GetInstance().ReleaseUnusedTls();
}

TEST_F(Plugin, LogsInTheHostsLog) {
    DeviceInfoList devices;
    CTlFactory::GetInstance().EnumerateDevices(devices);
    EXPECT_EQ(CountLogged(kTl, {kDebug, "Valid usable PortID '%s'", {"Scripted#Port0"}}), 1u);
    CTlFactory::GetInstance().ReleaseUnusedTls();
}

TEST_F(Plugin, ThrowsExceptionsThatTheHostCatches) {
    ITransportLayer* const tl = CTlFactory::GetInstance().CreateTl(kDeviceClass);
    ASSERT_NE(tl, nullptr);
    CDeviceInfo partial;
    partial.SetSerialNumber("none");
    EXPECT_EQ(ThrownBy([&] { tl->CreateDevice(partial); }).type, "RuntimeException");
    EXPECT_EQ(ThrownBy<GenICam::LogicalErrorException>([&] { tl->DestroyDevice(nullptr); }).type,
              "LogicalErrorException");
    CTlFactory::GetInstance().ReleaseTl(tl);
}

}  // namespace
}  // namespace Vanto
