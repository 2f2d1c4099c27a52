/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The built library against what becomes of links, and against others who hold a port
 */

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/fsuid.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <thread>

#include "../../../support/ClosedStreams.h"
#include "../Fixture.h"

namespace ClSerTtyTest {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

class ClSerTtyOfLinux : public ClSerTtyTest {};

TEST_F(ClSerTtyOfLinux, ASecondOpeningIsRefusedAndNamesTheHolder) {
    const hSerRef ref = Open();
    hSerRef second = nullptr;
    EXPECT_EQ(m_library.SerialInit(m_library.IndexOf("cam0"), &second), CL_ERR_PORT_IN_USE);
    EXPECT_EQ(second, nullptr);
    EXPECT_THAT(m_library.TextOf(CL_ERR_PORT_IN_USE), HasSubstr("process " + std::to_string(::getpid()) + " ("));
    m_library.SerialClose(ref);
    m_library.SerialClose(Open());
}

TEST_F(ClSerTtyOfLinux, APortThatAnotherProcessHoldsIsInUse) {
    int ready[2], done[2];
    ASSERT_EQ(::pipe(ready) + ::pipe(done), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const int tty = ::open(Link("cam0").c_str(), O_RDWR | O_NOCTTY);
        char byte = ::flock(tty, LOCK_EX | LOCK_NB) == 0 ? 'y' : 'n';
        ::close(done[1]);
        ::_exit(::write(ready[1], &byte, 1) == 1 && ::read(done[0], &byte, 1) == 0 ? 0 : 1);
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    ASSERT_EQ(byte, 'y');
    hSerRef ref = nullptr;
    EXPECT_EQ(m_library.SerialInit(m_library.IndexOf("cam0"), &ref), CL_ERR_PORT_IN_USE);
    EXPECT_THAT(m_library.TextOf(CL_ERR_PORT_IN_USE),
                HasSubstr("process " + std::to_string(child) + " (clsertty_test)"));
    for (int file : {ready[0], ready[1], done[0], done[1]})
        ::close(file);
    ::waitpid(child, nullptr, 0);
    m_library.SerialClose(Open());
}

TEST_F(ClSerTtyOfLinux, TheSamePortUnderAnotherNameIsInUse) {
    fs::copy_symlink(Link("cam0"), Link("again"));
    const hSerRef ref = Open();
    hSerRef second = nullptr;
    EXPECT_EQ(m_library.SerialInit(m_library.IndexOf("again"), &second), CL_ERR_PORT_IN_USE);
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyOfLinux, APortThatVanishedSinceTheCountIsRefused) {
    const std::uint32_t index = m_library.IndexOf("cam0");
    fs::remove(Link("cam0"));
    hSerRef ref = nullptr;
    EXPECT_EQ(m_library.SerialInit(index, &ref), CL_ERR_INVALID_INDEX);
    const std::string text = m_library.TextOf(CL_ERR_INVALID_INDEX);
    EXPECT_THAT(text, HasSubstr("No such file"));
    EXPECT_THAT(text, Not(HasSubstr("'dialout'")));  // which would not help
}

TEST_F(ClSerTtyOfLinux, AFileInAPortsPlaceIsRefused) {
    const std::uint32_t index = m_library.IndexOf("cam0");
    fs::remove(Link("cam0"));
    std::ofstream(Link("cam0")) << "no tty";
    hSerRef ref = nullptr;
    EXPECT_EQ(m_library.SerialInit(index, &ref), CL_ERR_INVALID_INDEX);
}

TEST_F(ClSerTtyOfLinux, TakesThePlaceOfNoStandardStream) {
    const std::uint32_t index = m_library.IndexOf("cam0");
    hSerRef ref = nullptr;
    bool isTaken = false;
    {
        const test_support::ClosedStreams closed;
        m_library.SerialInit(index, &ref);
        for (const int stream : {0, 1, 2})
            isTaken = isTaken || test_support::IsOpen(stream);
    }
    EXPECT_FALSE(isTaken);
    EXPECT_EQ(Write(ref, "x"), CL_ERR_NO_ERR);
    EXPECT_EQ(m_end->Receive(1), "x");
    m_library.SerialClose(ref);
}

TEST_F(ClSerTtyOfLinux, APortWithoutPermissionNamesTheGroup) {
    fs::permissions(fs::canonical(Link("cam0")), fs::perms::none);
    const std::uint32_t index = m_library.IndexOf("cam0");
    std::thread([&] {
        // This thread alone gives up root's right to open everything.
        ::setfsuid(65534);
        hSerRef ref = nullptr;
        EXPECT_EQ(m_library.SerialInit(index, &ref), CL_ERR_INVALID_INDEX);
        EXPECT_THAT(m_library.TextOf(CL_ERR_INVALID_INDEX), HasSubstr("'dialout'"));
    }).join();
}

}  // namespace
}  // namespace ClSerTtyTest
