/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the Shift key where the X display is absent or in trouble
 */

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "../../../support/display/VirtualDisplay.h"
#include "os/Environment.h"
#include "os/System.h"

namespace {

class ShiftKey : public testing::Test {
public:
    ~ShiftKey() override {
        if (m_display.status == os::EnvironmentStatus::kPresent)
            os::SetEnvironment("DISPLAY", m_display.text);
        else
            os::UnsetEnvironment("DISPLAY");
    }

private:
    os::EnvironmentValue m_display = os::GetEnvironment("DISPLAY");
};

// Listens on a port of a TCP display and accepts, through the backlog.
class SilentDisplay {
public:
    SilentDisplay() {
        for (m_number = 60; m_number < 200; ++m_number) {
            sockaddr_in address{};
            address.sin_family = AF_INET;
            address.sin_port = htons(static_cast<std::uint16_t>(6000 + m_number));
            address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            if (::bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                ::listen(m_socket, 4) == 0)
                return;
        }
    }
    ~SilentDisplay() { ::close(m_socket); }

    std::string Name() const { return "localhost:" + std::to_string(m_number) + ".0"; }

    // What the next one to connect sends before it leaves or hears nothing any more.
    std::string Request() const {
        const int connection = ::accept(m_socket, nullptr, nullptr);
        std::string bytes(100, '\0');
        bytes.resize(static_cast<std::size_t>(::recv(connection, bytes.data(), bytes.size(), 0)));
        ::close(connection);
        return bytes;
    }

private:
    int m_socket = ::socket(AF_INET, SOCK_STREAM, 0);
    int m_number = 0;
};

TEST_F(ShiftKey, IsNotHeldWithoutADisplay) {
    os::UnsetEnvironment("DISPLAY");
    EXPECT_FALSE(os::IsShiftKeyDown());
    os::SetEnvironment("DISPLAY", "");
    EXPECT_FALSE(os::IsShiftKeyDown());
}

TEST_F(ShiftKey, IsNotHeldOnADisplayThatIsNotThere) {
    for (const char* display : {":49999", "unix:49999", "localhost:49999", "no display", ":", ":x", "host.invalid:0",
                                ":99999999999999999999", "[::1]:49999"}) {
        os::SetEnvironment("DISPLAY", display);
        EXPECT_FALSE(os::IsShiftKeyDown()) << display;
    }
}

TEST_F(ShiftKey, DoesNotHangOnADisplayThatDoes) {
    const SilentDisplay display;
    os::SetEnvironment("DISPLAY", display.Name());
    EXPECT_FALSE(os::IsShiftKeyDown());
}

TEST_F(ShiftKey, AsksAServerInTheProtocolsVersionWithoutAnyAuthority) {
    const SilentDisplay display;
    os::SetEnvironment("DISPLAY", display.Name());
    EXPECT_FALSE(os::IsShiftKeyDown());
    EXPECT_EQ(display.Request(), std::string("l\0\13\0\0\0\0\0\0\0\0\0", 12));
}

TEST_F(ShiftKey, IsHeldAsLongAsEitherOfThemIs) {
    if (!test_support::VirtualDisplay::IsInstalled())
        GTEST_SKIP() << "Xvfb is not installed (package xvfb)";
    test_support::VirtualDisplay display;
    for (const std::string& name : {display.Name(), "unix" + display.Name(), display.Name() + ".0"}) {
        os::SetEnvironment("DISPLAY", name);
        for (const test_support::Shift key : {test_support::Shift::kLeft, test_support::Shift::kRight}) {
            EXPECT_FALSE(os::IsShiftKeyDown());
            display.PressShift(key);
            EXPECT_TRUE(os::IsShiftKeyDown()) << name;
            display.ReleaseShift(key);
        }
    }
    EXPECT_FALSE(os::IsShiftKeyDown());
}

}  // namespace
