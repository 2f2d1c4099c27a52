/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A tty as a serial line: how it is set up and given back
 */

#include "posix/TtyDevice.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include "Pty.h"

namespace ClSerTtyTest {
namespace {

using ClSerTty::TtyDevice;

class TtyDeviceTest : public testing::Test {
protected:
    TtyDevice Open() const { return TtyDevice({"line", m_pty.SlavePath()}); }

    Pty m_pty;
};

TEST_F(TtyDeviceTest, IsRawWithEightBitsWhateverItWasBefore) {
    termios settings{};
    ASSERT_EQ(::tcgetattr(m_pty.Slave(), &settings), 0);
    settings.c_cc[VMIN] = 0;
    settings.c_cc[VTIME] = 5;
    settings.c_cflag |= PARENB | CSTOPB | HUPCL;
    ASSERT_EQ(::tcsetattr(m_pty.Slave(), TCSANOW, &settings), 0);
    const TtyDevice device = Open();
    ASSERT_EQ(::tcgetattr(m_pty.Slave(), &settings), 0);
    EXPECT_EQ(settings.c_iflag, 0u);
    EXPECT_EQ(settings.c_oflag, 0u);
    EXPECT_EQ(settings.c_lflag, 0u);
    EXPECT_EQ(settings.c_cflag & ~static_cast<tcflag_t>(CBAUD), static_cast<tcflag_t>(CS8 | CREAD | CLOCAL));
    EXPECT_EQ(settings.c_cc[VMIN], 1);
    EXPECT_EQ(settings.c_cc[VTIME], 0);
    EXPECT_EQ(::cfgetospeed(&settings), static_cast<speed_t>(B9600));
}

TEST_F(TtyDeviceTest, ForgetsWhatCameBeforeItWasOpened) {
    ASSERT_EQ(::write(m_pty.Master(), "old\n", 4), 4);
    TtyDevice device = Open();
    EXPECT_EQ(device.BytesAvailable(), 0u);
    char byte = '.';
    EXPECT_EQ(device.TakeInput({&byte, 1}), 0u);
}

// It would outlive a user that is killed, until the other side closes.
TEST_F(TtyDeviceTest, KeepsNobodyFromAPseudoTerminalByTheKernel) {
    const TtyDevice device = Open();
    int isExclusive = 1;
    ASSERT_EQ(::ioctl(m_pty.Slave(), TIOCGEXCL, &isExclusive), 0);
    EXPECT_EQ(isExclusive, 0);
}

TEST_F(TtyDeviceTest, GivesALineBackToOthersWhenItGoes) {
    { const TtyDevice device = Open(); }
    const int tty = ::open(m_pty.SlavePath().c_str(), O_RDWR | O_NOCTTY);
    EXPECT_GE(tty, 0);
    ::close(tty);
    EXPECT_NO_THROW(Open());
}

}  // namespace
}  // namespace ClSerTtyTest
