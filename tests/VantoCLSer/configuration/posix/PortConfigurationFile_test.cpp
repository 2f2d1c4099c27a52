/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of port configuration files that may not be read, and of what is no file, on POSIX systems
 */

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <thread>

#include "VantoCLSer/VantoCLSerTL.h"
#include "VantoCLSer/configuration/PortConfiguration.h"
#include "clbindings/BoundedXmlFile.h"
#include "clbindings/XercesGuard.h"
#include "tests/VantoCLSer/Fixture.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::HasSubstr;

constexpr unsigned kNobody = 65534;

// Runs an action as a user without rights. The system keeps them per thread; only the C library's functions change
// them for all.
template <class Action>
void AsNobody(const Action& action) {
    std::thread thread([&] {
        if (::geteuid() == 0) {
            ASSERT_EQ(::syscall(SYS_setresgid, kNobody, kNobody, kNobody), 0);
            ASSERT_EQ(::syscall(SYS_setresuid, kNobody, kNobody, kNobody), 0);
        }
        action();
    });
    thread.join();
}

class PortConfigurationSpecialFile : public PluginTest {};

TEST_F(PortConfigurationSpecialFile, ThatMayNotBeReadIsLoggedAndYieldsNothing) {
    WriteConfiguration(PortElement("a"));
    ASSERT_EQ(::chmod(ConfigurationPath().c_str(), 0), 0);
    AsNobody([&] {
        PortConfigurationList list;
        ReadCLBindings(ConfigurationPath(), list);
        EXPECT_TRUE(list.empty());
    });
    EXPECT_EQ(
        CountLogged(kTl, {kError, "CLBindings file '%s' does not exist or could not be read.", {ConfigurationPath()}}),
        1u);
}

TEST_F(PortConfigurationSpecialFile, ThatMayNotBeReadEmptiesTheList) {
    CVantoCLSerTl tl;
    WriteConfiguration(PortElement("a"));
    EXPECT_EQ(tl.UpdatePortConfiguration(), 1u);
    std::filesystem::last_write_time(ConfigurationPath(),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    ASSERT_EQ(::chmod(ConfigurationPath().c_str(), 0), 0);
    AsNobody([&] { EXPECT_EQ(tl.UpdatePortConfiguration(), 0u); });
}

TEST_F(PortConfigurationSpecialFile, ThatIsAPipeDoesNotBlock) {
    ASSERT_EQ(::mkfifo(ConfigurationPath().c_str(), 0600), 0);
    PortConfigurationList list;
    const Thrown thrown = ThrownBy([&] { ReadCLBindings(ConfigurationPath(), list); });
    EXPECT_THAT(thrown.description, HasSubstr("is a folder or a device, not a file."));
}

TEST_F(PortConfigurationSpecialFile, WhoseNameIsTakenByAPipeDoesNotBlock) {
    WriteConfiguration(PortElement("a"));
    const XercesSession xerces([] {});
    const BoundedXmlFile file(ConfigurationPath());
    std::filesystem::remove(ConfigurationPath());
    ASSERT_EQ(::mkfifo(ConfigurationPath().c_str(), 0600), 0);
    EXPECT_EQ(file.makeStream(), nullptr);
}

TEST_F(PortConfigurationSpecialFile, ThatNeverEndsIsRefused) {
    std::filesystem::create_symlink("/dev/zero", ConfigurationPath());
    PortConfigurationList list;
    const Thrown thrown = ThrownBy([&] { ReadCLBindings(ConfigurationPath(), list); });
    EXPECT_THAT(thrown.description, HasSubstr("is a folder or a device, not a file."));
}

TEST_F(PortConfigurationSpecialFile, WhoseStatusCannotBeReadYieldsNothing) {
    std::filesystem::create_symlink(ConfigurationPath(), ConfigurationPath());
    CVantoCLSerTl tl;
    EXPECT_EQ(tl.UpdatePortConfiguration(), 0u);
    EXPECT_EQ(tl.UpdatePortConfiguration(), 0u);
    // Its time is not known, so that it is tried again each time.
    EXPECT_EQ(CountFormat("CLBindings file '%s' does not exist or could not be read."), 2u);
}

}  // namespace
}  // namespace Vanto
