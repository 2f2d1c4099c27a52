/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of a port that its serial library lists and can't open
 */
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "../CamerasFixture.h"

namespace {

using testing::HasSubstr;
using tools_test::Reasons;
using tools_test::RunResult;
using tools_test::RunVantoCl;

/// A terminal that refuses whoever opens it, as an adapter does whose driver has failed.
class UnopenablePort : public Reasons {
protected:
    UnopenablePort() : m_locked(posix_openpt(O_RDWR | O_NOCTTY)) {
        std::filesystem::create_symlink(ptsname(m_locked), Folder() / "tty0");
        Configure(kNoCamera);
    }
    ~UnopenablePort() override { ::close(m_locked); }

private:
    const int m_locked;  // never unlocked
};

TEST_F(UnopenablePort, IsSaidByTheList) {
    ExpectReason(Own(), "Port 'COM_Port#tty0': its serial library can't open the port: ",
                 "Is the frame grabber or the adapter still plugged in?");
}

TEST_F(UnopenablePort, IsSaidByWhoeverWantsItsCamera) {
    const RunResult run = RunVantoCl({"get", "COM_Port#tty0", "Width"}, Own());
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(run.err, HasSubstr("port 'COM_Port#tty0': its serial library can't open the port: "));
}

TEST_F(UnopenablePort, IsSaidByTheDoctor) {
    const RunResult run = RunVantoCl({"doctor"}, Own());
    EXPECT_THAT(run.out, HasSubstr("its serial library can't open the port: "));
}

}  // namespace
