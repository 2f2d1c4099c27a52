/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How long a port keeps the library of its camera's driver, as the system is asked for it
 */

#include <dlfcn.h>

#include <filesystem>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "tests/VantoCLSer/PortFixture.h"

namespace {

// What becomes of the library whose name a test watches.
struct Watch {
    std::mutex lock;
    std::string name;
    std::multiset<void*> held;
    int opened = 0;
    int closed = 0;
} g_watch;

template <class Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// In place of the C library's, for this program, of which the port is a part. CLProtocol is none: it has its own.
extern "C" void* dlopen(const char* path, int flags) {
    void* const library = Next<void*(const char*, int)>("dlopen")(path, flags);
    const std::lock_guard lock(g_watch.lock);
    if (library != nullptr && path != nullptr && !g_watch.name.empty() && std::string(path).ends_with(g_watch.name)) {
        g_watch.held.insert(library);
        ++g_watch.opened;
    }
    return library;
}

extern "C" int dlclose(void* library) {
    {
        const std::lock_guard lock(g_watch.lock);
        if (const auto held = g_watch.held.find(library); held != g_watch.held.end()) {
            g_watch.held.erase(held);
            ++g_watch.closed;
        }
    }
    return Next<int(void*)>("dlclose")(library);
}

namespace Vanto {
namespace {

using namespace clser_test;

// The camera's identifier names a copy of the driver, which CLProtocol keeps once it has loaded it.
class PortDriverLibrary : public PluginTest {
protected:
    PortDriverLibrary() {
        scripted::Serial().SetPorts(1, {kCamera});
        const std::string folder = m_folder / scripted::SystemFolder();
        std::filesystem::create_directory(folder);
        std::filesystem::copy_file(scripted::DriverPath(), folder + "/libWatched.so");
        const std::lock_guard lock(g_watch.lock);
        g_watch.name = "/libWatched.so";
        g_watch.opened = g_watch.closed = 0;
    }
    ~PortDriverLibrary() override {
        m_port.reset();
        const std::lock_guard lock(g_watch.lock);
        g_watch.name.clear();
        g_watch.held.clear();
    }

    const std::string m_deviceId = m_folder.Path() + "#libWatched.so#" + kCamera;
    std::optional<CVantoCLSerPort> m_port{std::in_place, "Scripted#Port0"};
};

TEST_F(PortDriverLibrary, IsLoadedByConnectingAndKeptUntilTheEnd) {
    ASSERT_TRUE(m_port->Connect(m_deviceId));
    EXPECT_EQ(g_watch.opened, 1);
    m_port->Close(false);
    EXPECT_EQ(g_watch.closed, 0);
    m_port.reset();
    EXPECT_EQ(g_watch.closed, 1);
}

TEST_F(PortDriverLibrary, ReplacesTheOneBefore) {
    ASSERT_TRUE(m_port->Connect(m_deviceId));
    m_port->Close(false);
    ASSERT_TRUE(m_port->Connect(m_deviceId));
    EXPECT_EQ(g_watch.opened, 2);
    EXPECT_EQ(g_watch.closed, 1);
}

TEST_F(PortDriverLibrary, IsNotLoadedByOpeningAgain) {
    ASSERT_TRUE(m_port->Connect(m_deviceId));
    m_port->Close(true);
    ASSERT_TRUE(m_port->Reopen());
    EXPECT_EQ(g_watch.opened, 1);
    EXPECT_EQ(g_watch.closed, 0);
}

}  // namespace
}  // namespace Vanto
