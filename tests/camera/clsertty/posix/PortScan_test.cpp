/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Finding ttys in a made-up system and in folders of links
 */

#include "posix/PortScan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <fstream>

#include "../../../support/TemporaryFolder.h"
#include "Pty.h"
#include "os/Environment.h"

namespace ClSerTty {
namespace {

namespace fs = std::filesystem;
using ClSerTtyTest::Pty;
using test_support::TemporaryFolder;

class MachineTtysTest : public testing::Test {
protected:
    /// A tty as the kernel shows it; the type is that of a serial chip, empty for drivers without that attribute.
    void AddTty(const std::string& name, bool hasDevice, const std::string& type = "") {
        const fs::path folder = fs::path(m_root / "sys/class/tty") / name;
        fs::create_directories(folder);
        fs::create_directories(m_root / "dev");
        if (hasDevice)
            fs::create_directories(folder / "device");
        if (!type.empty())
            std::ofstream(folder / "type") << type << "\n";
        std::ofstream(m_root / ("dev/" + name));
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const PortInfo& port : MachineTtys({m_root / "sys", m_root / "dev"}))
            names.push_back(port.name);
        std::sort(names.begin(), names.end());
        return names;
    }

    TemporaryFolder m_root;
};

TEST_F(MachineTtysTest, OffersTtysWithADeviceBehindThem) {
    AddTty("ttyUSB0", true);
    AddTty("ttyACM1", true);
    AddTty("ttyS0", true, "4");
    AddTty("ttyCL0", true);
    EXPECT_EQ(Names(), (std::vector<std::string>{"ttyACM1", "ttyCL0", "ttyS0", "ttyUSB0"}));
}

TEST_F(MachineTtysTest, LeavesOutChipsThatAreNotFitted) {
    AddTty("ttyS4", true, "0");
    EXPECT_TRUE(Names().empty());
}

TEST_F(MachineTtysTest, LeavesOutVirtualTerminals) {
    AddTty("tty1", false);
    AddTty("ptmx", false);
    AddTty("hvc0", true);
    EXPECT_TRUE(Names().empty());
}

TEST_F(MachineTtysTest, LeavesOutActiveConsoles) {
    AddTty("ttyS0", true, "4");
    AddTty("ttyS1", true, "4");
    AddTty("console", false);
    std::ofstream(m_root / "sys/class/tty/console/active") << "tty0 ttyS1\n";
    EXPECT_EQ(Names(), std::vector<std::string>{"ttyS0"});
}

TEST_F(MachineTtysTest, LeavesOutThoseWithoutADeviceFile) {
    AddTty("ttyUSB0", true);
    fs::remove(m_root / "dev/ttyUSB0");
    EXPECT_TRUE(Names().empty());
}

TEST_F(MachineTtysTest, FindsNothingWithoutTheFolder) {
    EXPECT_TRUE(Names().empty());
}

TEST(LinkedTtys, OffersALinkedPseudoTerminalByTheLinksName) {
    const TemporaryFolder folder;
    const Pty pty;
    fs::create_symlink(pty.SlavePath(), folder / "cam0");
    EXPECT_EQ(LinkedTtys(folder.Path()), (PortList{{"cam0", folder / "cam0"}}));
}

TEST(LinkedTtys, LeavesOutEverythingElse) {
    const TemporaryFolder folder;
    fs::create_symlink("/dev/null", folder / "null");
    fs::create_symlink(folder / "nothing", folder / "dangling");
    fs::create_symlink(folder / "loop", folder / "loop");
    fs::create_symlink(folder.Path(), folder / "folder");
    std::ofstream(folder / "file") << "text";
    fs::create_symlink(folder / "file", folder / "to a file");
    EXPECT_TRUE(LinkedTtys(folder.Path()).empty());
}

TEST(LinkedTtys, LeavesOutAnotherDeviceWhateverFailedBefore) {
    const TemporaryFolder folder;
    fs::create_symlink("/dev/null", folder / "null");
    errno = 0;
    EXPECT_TRUE(LinkedTtys(folder.Path()).empty());
}

TEST(LinkedTtys, LeavesOutNamesWithControlCharacters) {
    const TemporaryFolder folder;
    const Pty pty;
    fs::create_symlink(pty.SlavePath(), folder / "cam\t0");
    fs::create_symlink(pty.SlavePath(), folder / "cam\n0");
    EXPECT_TRUE(LinkedTtys(folder.Path()).empty());
}

TEST(LinkedTtys, AMissingFolderHasNone) {
    EXPECT_TRUE(LinkedTtys("/no/such/folder").empty());
}

TEST(FindPorts, LooksInEveryFolderOfTheListOnce) {
    const TemporaryFolder first;
    const TemporaryFolder second;
    const Pty pty;
    fs::create_symlink(pty.SlavePath(), first / "cam1");
    fs::create_symlink(pty.SlavePath(), second / "cam1");
    fs::create_symlink(pty.SlavePath(), second / "cam0");
    os::SetEnvironment("CLSERTTY_PATH", ":" + first.Path() + "::/missing:" + second.Path());
    PortList linked;
    for (const PortInfo& port : FindPorts()) {
        if (port.name.rfind("cam", 0) == 0)
            linked.push_back(port);
    }
    EXPECT_EQ(linked, (PortList{{"cam0", second / "cam0"}, {"cam1", first / "cam1"}}));
}

}  // namespace
}  // namespace ClSerTty
