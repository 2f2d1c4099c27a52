/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of closing a port after inactivity
 */

#include <thread>

#include "CLProtocol/CLException.h"
#include "tests/VantoCLSer/PortFixture.h"

namespace Vanto {
namespace {

using namespace clser_test;

constexpr char kClosing[] = "AutoClosing CLPort '%s' due to inactivity.";
constexpr char kClosingText[] = "AutoClosing CLPort 'Scripted#Port0' due to inactivity.";
constexpr char kNotClosed[] = "Clould not AutoClose CLPort '%s'.";
constexpr char kNotClosedText[] = "Clould not AutoClose CLPort 'Scripted#Port0'.";
constexpr std::uint32_t kNever = 3600000;

class PortAutoClose : public PortTest {
protected:
    std::size_t Closings() const { return CountLogged(kPort, {kDebug, kClosing, {kPortId}}); }
    std::size_t GivenUp() const { return CountLogged(kPort, {kWarning, kNotClosed, {kPortId}}); }
    bool WaitForClose() {
        return WaitUntil([this] { return !m_port.IsConnected(); });
    }
    // Keeps an access busy until the timer's callback has begun, which then waits for the port.
    void WaitForCallback() { EXPECT_TRUE(m_log.WaitForText(kClosingText, kLong)); }
};

TEST_F(PortAutoClose, ClosesAnIdleConnection) {
    ConnectPort();
    EXPECT_TRUE(m_port.SetAutoCloseTimeout(1));
    EXPECT_TRUE(WaitForClose());
    EXPECT_FALSE(IsLineOpen());
    EXPECT_EQ(Closings(), 1u);
    EXPECT_EQ(GivenUp(), 0u);
    EXPECT_EQ(CountFormat("Closed CLPort '%s'"), 0u);
}

// Whoever runs on the timer's own thread can't wait for its callback to end.
TEST_F(PortAutoClose, CannotBeClosedByTheTimersThread) {
    ConnectPort();
    std::atomic<int> result{-1};
    const tracelog::LogSubscription closer(
        [&](const tracelog::LogMessage& message) {
            if (message.text == kClosingText)
                result = m_port.Close(false) ? 1 : 0;
        },
        "Vanto.CLSer.Port:debug");
    m_port.SetAutoCloseTimeout(1);
    EXPECT_TRUE(WaitForClose());  // the temporary close that follows
    EXPECT_EQ(result, 0);
    EXPECT_EQ(CountFormat("Closed CLPort '%s'"), 0u);
    EXPECT_TRUE(m_port.Reopen());  // the camera is still known
}

TEST_F(PortAutoClose, UsesATimeoutThatWasSetBeforeConnecting) {
    EXPECT_TRUE(m_port.SetAutoCloseTimeout(1));
    ConnectPort();
    EXPECT_TRUE(WaitForClose());
}

TEST_F(PortAutoClose, KeepsTheCameraForTheNextAccess) {
    ConnectPort();
    m_port.SetAutoCloseTimeout(1);
    ASSERT_TRUE(WaitForClose());
    EXPECT_NO_THROW(ReadByte());
    EXPECT_EQ(scripted::Driver().probedFor, kCamera);
}

TEST_F(PortAutoClose, IsOffAtFirst) {
    ConnectPort();
    ReadByte();
    EXPECT_TRUE(m_port.SetAutoCloseTimeout(0));
    EXPECT_TRUE(m_port.IsConnected());
    EXPECT_EQ(Closings(), 0u);
}

TEST_F(PortAutoClose, IsSwitchedOffAtOnce) {
    ConnectPort();
    m_port.SetAutoCloseTimeout(kNever);
    m_port.SetAutoCloseTimeout(0);
    EXPECT_TRUE(m_port.Close(false));
    EXPECT_EQ(Closings(), 0u);
}

TEST_F(PortAutoClose, IsStartedAgainByAnAccess) {
    m_port.SetAutoCloseTimeout(1);
    ConnectPort();
    for (std::size_t count = 1; count <= 3; ++count) {
        ASSERT_TRUE(WaitUntil([&] { return Closings() >= count; }));
        ASSERT_TRUE(WaitForClose());
        count % 2 == 0 ? WriteByte(1) : static_cast<void>(ReadByte());
    }
}

TEST_F(PortAutoClose, IsStartedAgainByADescription) {
    m_port.SetAutoCloseTimeout(1);
    ConnectPort();
    ASSERT_TRUE(WaitForClose());
    // Opening the connection again starts no timer.
    ASSERT_TRUE(m_port.Reopen());
    EXPECT_TRUE(m_port.HasXML(m_deviceId));
    ASSERT_TRUE(WaitUntil([&] { return Closings() == 2; }));
    ASSERT_TRUE(WaitForClose());
    ASSERT_TRUE(m_port.Reopen());
    EXPECT_NE(m_port.GetXML(m_deviceId), "");
    EXPECT_TRUE(WaitUntil([&] { return Closings() == 3; }));
}

TEST_F(PortAutoClose, WarnsWhenThereIsNothingToClose) {
    ConnectPort();
    // A temporary close leaves the timer alone.
    m_port.SetAutoCloseTimeout(20);
    m_port.Close(true);
    EXPECT_TRUE(m_log.WaitForText(kNotClosedText, kLong));
    EXPECT_EQ(Closings(), 1u);
}

TEST_F(PortAutoClose, IsStoppedByAFullClose) {
    ConnectPort();
    m_port.SetAutoCloseTimeout(kNever);
    EXPECT_TRUE(m_port.Close(false));
    EXPECT_TRUE(m_port.SetAutoCloseTimeout(kNever));
    EXPECT_EQ(Closings(), 0u);
}

TEST_F(PortAutoClose, GivesWayToAnAccessInProgress) {
    ConnectPort();
    scripted::Driver().onRead = [this](auto...) {
        WaitForCallback();
        return 0;
    };
    m_port.SetAutoCloseTimeout(1);
    EXPECT_NO_THROW(ReadByte());
    EXPECT_GE(GivenUp(), 1u);
}

TEST_F(PortAutoClose, GivesWayToAChangeOfTheTimeout) {
    ConnectPort();
    scripted::Driver().onWrite = [this](auto...) {
        WaitForCallback();
        // From another thread than the one that holds the port.
        std::thread([this] { EXPECT_TRUE(m_port.SetAutoCloseTimeout(0)); }).join();
        return 0;
    };
    m_port.SetAutoCloseTimeout(1);
    EXPECT_NO_THROW(WriteByte(1));
    EXPECT_EQ(GivenUp(), 1u);
    EXPECT_TRUE(m_port.IsConnected());
}

TEST_F(PortAutoClose, GivesWayToAFullClose) {
    ConnectPort();
    std::thread closer;
    scripted::Driver().onRead = [&](auto...) {
        WaitForCallback();
        // Stops the timer, and then waits for this access.
        closer = std::thread([this] { EXPECT_TRUE(m_port.Close(false)); });
        EXPECT_TRUE(m_log.WaitForText(kNotClosedText, kLong));
        return 0;
    };
    m_port.SetAutoCloseTimeout(1);
    EXPECT_NO_THROW(ReadByte());
    closer.join();
    EXPECT_FALSE(m_port.IsConnected());
}

TEST_F(PortAutoClose, GivesWayToADescription) {
    ConnectPort();
    scripted::Driver().onGetXmlIds = [this](auto...) {
        WaitForCallback();
        return -30001;
    };
    m_port.SetAutoCloseTimeout(1);
    EXPECT_EQ(m_port.GetXML(m_deviceId), "");
}

TEST_F(PortAutoClose, ClosesAfterAnAccessThatFailed) {
    ConnectPort();
    scripted::Driver().onRead = [this](auto...) {
        WaitForCallback();
        return -30001;
    };
    m_port.SetAutoCloseTimeout(1);
    EXPECT_THROW(ReadByte(), CLProtocol::CLErrException);
    EXPECT_TRUE(WaitForClose());
    EXPECT_EQ(GivenUp(), 0u);
}

TEST_F(PortAutoClose, MayHappenWhileThePortIsDestroyed) {
    for (int round = 0; round < 20; ++round) {
        CVantoCLSerPort port("Scripted#Port0");
        port.SetAutoCloseTimeout(1);
        ASSERT_TRUE(port.Connect(m_deviceId));
        std::this_thread::sleep_for(std::chrono::microseconds(500 + 50 * round));
    }
    EXPECT_FALSE(IsLineOpen());
}

TEST_F(PortAutoClose, StandsADriverThatThrows) {
    ConnectPort();
    scripted::Driver().onDisconnect = [](auto) -> std::int32_t { throw 1; };
    m_port.SetAutoCloseTimeout(1);
    EXPECT_TRUE(
        WaitUntil([this] { return CountFormat("Could not remove CLPort '%s' DeviceID '%s' Error: '%s'") == 1; }));
    EXPECT_EQ(GivenUp(), 0u);
}

}  // namespace
}  // namespace Vanto
