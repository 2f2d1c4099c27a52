/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what goes on while a foreign library hangs in its constructor, holding the system's own lock
 */

#include <future>
#include <thread>

#include "CLProtocol/Diagnostics.h"
#include "VantoCLSer/VantoCLSerPort.h"
#include "VantoCLSer/base/LibraryLoader.h"
#include "tests/VantoCLSer/Fixture.h"
#include "vanto/VantoFolders.h"

namespace Vanto {
namespace {

constexpr std::chrono::seconds kLong(60);
const CLibraryLoader::Patience kImpatience{std::chrono::milliseconds(1), std::chrono::milliseconds(1), {}};
constexpr char kPortId[] = "Scripted#Port0";
#ifdef _WIN32
constexpr char kPortList[] = ";";
#else
constexpr char kPortList[] = ":";
#endif

class HangingLibrary : public testing::Test {
protected:
    HangingLibrary() {
        scripted::Driver();
        scripted::Serial().SetPorts(1, {clser_test::kCamera});
        gcstring_vector found;
        CLProtocol::CCLPort::GetPortIDs(found);
        CLProtocol::CCLPort::GetDeviceIDTemplates(found);
        const scripted::ScopedVariable serial("CLSERIALPATH",
                                              scripted::SerialFolder() + kPortList + m_hanging.Folder());
        CLProtocol::SetPatience({50, 1000});
        CLProtocol::CCLPort::GetPortIDs(found);
    }
    // What was given up goes on once the library is released, and should not do so while the process ends.
    ~HangingLibrary() override {
        m_hanging.Release();
        while (CLProtocol::CountStuckThreads() != 0)
            std::this_thread::yield();
        CLProtocol::SetPatience({});
    }

    bool Ends(const std::function<void()>& action) const {
        auto done = std::async(std::launch::async, action);
        const bool ends = done.wait_for(kLong) == std::future_status::ready;
        if (!ends)
            m_hanging.Release();
        done.get();
        return ends;
    }

    scripted::Environment m_environment;
    scripted::HangingLibrary m_hanging;
};

TEST_F(HangingLibrary, KeepsNobodyFromKnowingTheRoot) {
    const scripted::ScopedVariable root("VANTO_ROOT");
    EXPECT_TRUE(Ends([] { EXPECT_NE(getVantoFolderPath(eRootFolder), ""); }));
}

TEST_F(HangingLibrary, KeepsNoPortFromConnecting) {
    CVantoCLSerPort port(kPortId);
    EXPECT_TRUE(Ends([&] { EXPECT_TRUE(port.Connect(scripted::FullDeviceId(clser_test::kCamera))); }));
    EXPECT_TRUE(port.IsConnected());
    EXPECT_TRUE(Ends([&] { EXPECT_TRUE(port.Close(false)); }));
    m_hanging.Release();
}

TEST_F(HangingLibrary, IsTriedAgainOnceItIsReleased) {
    CLibraryLoader loader(kImpatience);
    EXPECT_TRUE(Ends([&] { EXPECT_FALSE(loader.Load(scripted::DriverPath())); }));
    EXPECT_TRUE(Ends([&] { EXPECT_FALSE(loader.Load(scripted::DriverPath())); }));
    EXPECT_FALSE(loader.IsLoaded());
    m_hanging.Release();
    const auto end = std::chrono::steady_clock::now() + kLong;
    while (!loader.Load(scripted::DriverPath()) && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_TRUE(loader.IsLoaded());
}

TEST_F(HangingLibrary, DoesNotHangWhoGivesUpALoading) {
    auto loader = std::make_unique<CLibraryLoader>(kImpatience);
    EXPECT_TRUE(Ends([&] { EXPECT_FALSE(loader->Load(scripted::DriverPath())); }));
    EXPECT_TRUE(loader->IsStuck());
    EXPECT_EQ(CLibraryLoader::CountLeft(), 0U);
    EXPECT_TRUE(Ends([&] { loader.reset(); }));
    EXPECT_EQ(CLibraryLoader::CountLeft(), 1U);
    m_hanging.Release();
    while (CLibraryLoader::CountLeft() != 0)
        std::this_thread::yield();
}

TEST_F(HangingLibrary, IsRemindedOfWhileAnotherOneLoads) {
    int reminders = 0;
    CLibraryLoader loader({kLong, std::chrono::milliseconds(1), [&] {
                               if (++reminders == 3)
                                   m_hanging.Release();
                           }});
    EXPECT_TRUE(Ends([&] { EXPECT_TRUE(loader.Load(scripted::DriverPath())); }));
    EXPECT_GE(reminders, 3);
}

}  // namespace
}  // namespace Vanto
