/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what the plug-in exports to the factory
 */

#include <algorithm>
#include <thread>

#include "VantoCLSer/VantoCLSerTL.h"
#include "tests/VantoCLSer/Fixture.h"
#include "vanto/TlFactory.h"

namespace Vanto {

extern "C" {
int GetTLInfoList(TlInfoList& list);
ITransportLayer* Create(const CTlInfo& info);
void Destroy(ITransportLayer* tl);
}

namespace {

using namespace clser_test;
using testing::IsEmpty;

class Hook : public IDeviceCreationHook {
    void OnCreateDevice(CDeviceInfo&, gcstring_vector&) override {}
};

// Another library's transport layer.
class ForeignTl : public CTransportLayerBase<ITransportLayer> {
public:
    explicit ForeignTl(bool& isAlive) : m_isAlive(isAlive) { m_isAlive = true; }
    ~ForeignTl() override { m_isAlive = false; }
    CTlInfo GetTlInfo() const override { return CTlInfo(); }

protected:
    int InternalEnumerateDevices(DeviceInfoList&) override { return 0; }
    IVantoDevice* InternalCreateDevice(const CDeviceInfo&) override { return nullptr; }
    CDeviceInfo InternalCreateDeviceInfo() override { return CDeviceInfo(); }
    gcstring GetDeviceClass() const override { return "Foreign"; }
    bool InternalIsDeviceAccessible(const CDeviceInfo&, AccessModeSet, AccessibilityCode*) override { return false; }

private:
    bool& m_isAlive;
};

class Module : public PluginTest {
protected:
    Module() { GetTLInfoList(m_list); }

    CTlInfo OfClass(const char* deviceClass) const {
        CTlInfo info;
        info.SetDeviceClass(deviceClass);
        return info;
    }

    TlInfoList m_list;
};

TEST_F(Module, OffersOneTransportLayer) {
    ASSERT_EQ(m_list.size(), 1u);
    EXPECT_EQ(m_list[0].GetFullName(), "Camera Link/MarlowCameraLink 3.2.2.3032");
}

TEST_F(Module, AppendsOneRecordEachTime) {
    EXPECT_EQ(GetTLInfoList(m_list), 1);
    EXPECT_EQ(GetTLInfoList(m_list), 1);
    EXPECT_EQ(m_list.size(), 3u);
}

TEST_F(Module, ReturnsTheSameObjectTwice) {
    ITransportLayer* const first = Create(m_list[0]);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(Create(m_list[0]), first);
    Destroy(first);
}

TEST_F(Module, KeepsNoCountOfCreate) {
    Hook hook;
    ITransportLayer* const first = Create(m_list[0]);
    Create(m_list[0]);
    dynamic_cast<ITransportLayerPrivate&>(*first).SetCreationHook(&hook);
    Destroy(first);
    // The address may be the old one; the state is not.
    ITransportLayer* const second = Create(m_list[0]);
    EXPECT_EQ(dynamic_cast<ITransportLayerPrivate&>(*second).SetCreationHook(nullptr), nullptr);
    Destroy(second);
}

TEST_F(Module, ReturnsNullForAnotherClassAndLogsNothing) {
    EXPECT_EQ(Create(OfClass("marlowcameralink")), nullptr);
    EXPECT_EQ(Create(OfClass("MarlowCameraLink ")), nullptr);
    EXPECT_EQ(Create(OfClass("")), nullptr);
    EXPECT_EQ(Create(CTlInfo()), nullptr);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(Module, LooksAtNothingButTheClass) {
    ITransportLayer* const tl = Create(OfClass("MarlowCameraLink"));
    EXPECT_NE(dynamic_cast<CVantoCLSerTl*>(tl), nullptr);
    Destroy(tl);
}

TEST_F(Module, IgnoresNull) {
    ITransportLayer* const tl = Create(m_list[0]);
    Destroy(nullptr);
    EXPECT_EQ(Create(m_list[0]), tl);
    Destroy(tl);
}

TEST_F(Module, DestroysAnotherObjectOfItsOwnWithoutForgettingTheOne) {
    ITransportLayer* const tl = Create(m_list[0]);
    Destroy(new CVantoCLSerTl);
    EXPECT_EQ(Create(m_list[0]), tl);
    Destroy(tl);
}

TEST_F(Module, LeavesForeignObjectsAlone) {
    bool isAlive = false;
    ForeignTl foreign(isAlive);
    EXPECT_EQ(foreign.GetXmlFileProvider(), nullptr);
    ITransportLayer* const tl = Create(m_list[0]);
    Destroy(&foreign);
    EXPECT_TRUE(isAlive);
    EXPECT_EQ(Create(m_list[0]), tl);
    Destroy(tl);
}

TEST_F(Module, TouchesNoFileAndNoPortBeforeTheFirstEnumeration) {
    const int calls = scripted::Serial().calls;
    Destroy(Create(m_list[0]));
    EXPECT_EQ(scripted::Serial().calls, calls);
    EXPECT_THAT(LoggedIn(kTl), IsEmpty());
}

TEST_F(Module, ClosesThePortsWhenDestroyed) {
    scripted::Serial().SetPorts(1, {kCamera});
    ITransportLayer* const tl = Create(m_list[0]);
    auto& port = dynamic_cast<CVantoCLSerTl&>(*tl).GetOrCreatePort("Scripted#Port0");
    ASSERT_TRUE(port.Connect(scripted::FullDeviceId(kCamera)));
    Destroy(tl);
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
    EXPECT_FALSE(scripted::Serial().Port(0).isOpen);
    EXPECT_EQ(CountLogged(kPort, {kDebug, "Closed CLPort '%s'", {"Scripted#Port0"}}), 1u);
}

TEST_F(Module, MakesOneObjectForThreadsThatAskAtOnce) {
    std::vector<ITransportLayer*> made(8);
    std::vector<std::thread> threads;
    for (ITransportLayer*& tl : made)
        threads.emplace_back([&] { tl = Create(m_list[0]); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(std::count(made.begin(), made.end(), made[0]), 8);
    Destroy(made[0]);
}

}  // namespace
}  // namespace Vanto
