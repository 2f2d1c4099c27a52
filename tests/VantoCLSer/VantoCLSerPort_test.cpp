/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of connecting, closing and opening a port again
 */

#include "VantoCLSer/VantoCLSerPort.h"

#include "tests/VantoCLSer/PortFixture.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kReopenError[] = "Could not connect CLPort '%s' DeviceID '%s' Error: %i '%s'";

class PortConnect : public PortTest {};

TEST_F(PortConnect, ConnectsAndLogs) {
    EXPECT_TRUE(m_port.Connect(m_deviceId));
    EXPECT_TRUE(m_port.IsConnected());
    EXPECT_TRUE(IsLineOpen());
    EXPECT_THAT(LoggedIn(kPort),
                ElementsAre(Logged{
                    kDebug, "Successfully created/connected deviceID '%s' on '%s'.", {m_deviceId.str(), kPortId}}));
}

TEST_F(PortConnect, SetsTheSerialTimeOut) {
    ConnectPort();
    ReadByte();
    EXPECT_EQ(scripted::Driver().lastTimeout, 400u);
}

TEST_F(PortConnect, IsRefusedWhenConnected) {
    ConnectPort();
    m_log.Clear();
    EXPECT_FALSE(m_port.Connect(m_deviceId));
    EXPECT_EQ(Openings(), 1);
    EXPECT_TRUE(m_port.IsConnected());
    EXPECT_THAT(LoggedIn(kPort), IsEmpty());
}

TEST_F(PortConnect, IsRefusedWhileTheCameraIsKnown) {
    ConnectPort();
    m_port.Close(true);
    m_log.Clear();
    EXPECT_FALSE(m_port.Connect(m_deviceId));
    EXPECT_FALSE(m_port.IsConnected());
    EXPECT_EQ(Openings(), 1);
    EXPECT_THAT(LoggedIn(kPort), IsEmpty());
}

TEST_F(PortConnect, IsPossibleAfterAFullClose) {
    ConnectPort();
    m_port.Close(false);
    EXPECT_TRUE(m_port.Connect(m_deviceId));
}

TEST_F(PortConnect, FailsWithoutACamera) {
    Unplug();
    EXPECT_FALSE(m_port.Connect(m_deviceId));
    EXPECT_FALSE(m_port.IsConnected());
    EXPECT_FALSE(IsLineOpen());
    const std::vector<Logged> logged = LoggedIn(kPort);
    ASSERT_EQ(logged.size(), 1u);
    EXPECT_EQ(logged[0].level, kError);
    EXPECT_EQ(logged[0].format, "Could not connect CLPort '%s' Error '%s'");
    EXPECT_EQ(logged[0].arguments.at(0), kPortId);
    EXPECT_THAT(logged[0].arguments.at(1), testing::HasSubstr("-10004"));
}

TEST_F(PortConnect, StoresNothingWhenItFails) {
    Unplug();
    m_port.Connect(m_deviceId);
    Plug();
    EXPECT_TRUE(m_port.Connect(m_deviceId));
}

TEST_F(PortConnect, FailsForAnotherCamera) {
    EXPECT_FALSE(m_port.Connect(scripted::FullDeviceId("Marlow#Heron#H2048#5678")));
    EXPECT_EQ(CountFormat("Could not connect CLPort '%s' Error '%s'"), 1u);
}

TEST_F(PortConnect, FailsForAnIdentifierThatIsNone) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    for (const std::string& deviceId : {std::string("nonsense"), std::string("%s%n#%n#%n#%s"), bytes,
                                        std::string(100000, '#'), std::string(300, 'x') + "#libD.so#Marlow"}) {
        EXPECT_FALSE(m_port.Connect(deviceId));
        EXPECT_FALSE(m_port.IsConnected());
    }
    EXPECT_EQ(CountFormat("Could not connect CLPort '%s' Error '%s'"), 5u);
    EXPECT_TRUE(m_port.Connect(m_deviceId));
}

TEST_F(PortConnect, FailsForAPortThatIsNone) {
    CVantoCLSerPort port("Scripted#%s%n");
    EXPECT_FALSE(port.Connect(m_deviceId));
    EXPECT_EQ(CountFormat("Could not connect CLPort '%s' Error '%s'"), 1u);
}

TEST_F(PortConnect, FailsWhenTheDriverThrows) {
    scripted::Driver().onProbe = [](auto...) -> std::int32_t { throw std::runtime_error("driver's own"); };
    EXPECT_FALSE(m_port.Connect(m_deviceId));
    EXPECT_FALSE(IsLineOpen());
    EXPECT_EQ(CountFormat("Could not connect CLPort '%s' Error '%s'"), 1u);
}

TEST_F(PortConnect, IsUndoneByTheDestructor) {
    {
        CVantoCLSerPort port(kPortId);
        ASSERT_TRUE(port.Connect(m_deviceId));
    }
    EXPECT_FALSE(IsLineOpen());
    EXPECT_EQ(CountLogged(kPort, {kDebug, "Closed CLPort '%s'", {kPortId}}), 1u);
}

TEST_F(PortConnect, ReportsReadAndWriteAsAccessMode) {
    EXPECT_EQ(m_port.GetAccessMode(), GenApi::RW);
}

TEST_F(PortConnect, TakesANullDeviceName) {
    m_port.SetDeviceName(nullptr);
    m_port.SetDeviceName("name");
    EXPECT_TRUE(m_port.Connect(m_deviceId));
}

class PortReopen : public PortTest {
protected:
    void ConnectAndClose() {
        ConnectPort();
        m_port.Close(true);
        m_log.Clear();
    }
};

TEST_F(PortReopen, IsRefusedForAnUnknownCamera) {
    EXPECT_FALSE(m_port.Reopen());
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(PortReopen, IsRefusedWhenConnected) {
    ConnectPort();
    m_log.Clear();
    EXPECT_FALSE(m_port.Reopen());
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(PortReopen, OpensTheSameCamera) {
    ConnectAndClose();
    EXPECT_TRUE(m_port.Reopen());
    EXPECT_TRUE(m_port.IsConnected());
    EXPECT_EQ(scripted::Driver().probedFor, kCamera);
    EXPECT_THAT(LoggedIn(kPort), ElementsAre(Logged{kDebug, "Reopening CLPort '%s'", {kPortId}}));
}

TEST_F(PortReopen, SetsNoSerialTimeOut) {
    ConnectAndClose();
    m_port.Reopen();
    ReadByte();
    EXPECT_NE(scripted::Driver().lastTimeout, 400u);
}

class PortReopenGone : public PortReopen, public testing::WithParamInterface<std::int32_t> {};

TEST_P(PortReopenGone, FiresRemoval) {
    ConnectAndClose();
    const auto owner = SetOwner();
    Unplug();
    scripted::Driver().noAnswer = GetParam();
    EXPECT_FALSE(m_port.Reopen());
    const std::vector<Logged> logged = LoggedIn(kPort);
    ASSERT_EQ(logged.size(), 4u);
    EXPECT_EQ(logged[0].format, "Reopening CLPort '%s'");
    EXPECT_EQ(logged[1].level, kError);
    EXPECT_EQ(logged[1].format, kReopenError);
    EXPECT_THAT(logged[1].arguments,
                ElementsAre(kPortId, m_deviceId.str(), std::to_string(GetParam()), testing::Not("")));
    EXPECT_EQ(logged[2], (Logged{kError, "Could not reopen CLPort '%s'", {kPortId}}));
    EXPECT_EQ(logged[3], RemovalMessage());
    EXPECT_EQ(owner->removals, 1);
}

INSTANTIATE_TEST_SUITE_P(NoAnswer, PortReopenGone, testing::Values(-10004, -30209),
                         [](const auto& test) { return "Code" + std::to_string(-test.param); });

TEST_F(PortReopen, FiresNoRemovalForAnotherCode) {
    ConnectAndClose();
    const auto owner = SetOwner();
    scripted::Driver().onProbe = [](auto...) { return -30001; };
    EXPECT_FALSE(m_port.Reopen());
    EXPECT_EQ(CountFormat(kReopenError), 1u);
    EXPECT_EQ(CountLogged(kPort, {kError, "Could not reopen CLPort '%s'", {kPortId}}), 1u);
    EXPECT_EQ(owner->removals, 0);
}

TEST_F(PortReopen, LogsAnExceptionWithoutACode) {
    ConnectAndClose();
    const auto owner = SetOwner();
    scripted::Driver().onProbe = [](auto...) -> std::int32_t { throw std::runtime_error("driver's own"); };
    EXPECT_FALSE(m_port.Reopen());
    const std::vector<Logged> logged = LoggedIn(kPort);
    ASSERT_EQ(logged.size(), 3u);
    EXPECT_EQ(logged[1].level, kError);
    EXPECT_EQ(logged[1].format, "Could not connect CLPort '%s' DeviceID '%s' Error: '%s'");
    EXPECT_THAT(logged[1].arguments, ElementsAre(kPortId, m_deviceId.str(), testing::HasSubstr("driver's own")));
    EXPECT_EQ(logged[2], (Logged{kError, "Could not reopen CLPort '%s'", {kPortId}}));
    EXPECT_EQ(owner->removals, 0);
}

TEST_F(PortReopen, FiresNothingWithoutAnOwner) {
    ConnectAndClose();
    Unplug();
    EXPECT_FALSE(m_port.Reopen());
    EXPECT_EQ(CountLogged(kPort, RemovalMessage()), 0u);
    // Nor is the port marked: a camera that is back is used again.
    Plug();
    EXPECT_NO_THROW(ReadByte());
}

class PortClose : public PortTest {};

TEST_F(PortClose, OfAFreshPortDoesNothing) {
    EXPECT_FALSE(m_port.Close(true));
    EXPECT_FALSE(m_port.Close(false));
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(PortClose, EndsTheConnection) {
    ConnectPort();
    m_log.Clear();
    EXPECT_TRUE(m_port.Close(false));
    EXPECT_FALSE(m_port.IsConnected());
    EXPECT_FALSE(IsLineOpen());
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
    EXPECT_THAT(LoggedIn(kPort), ElementsAre(Logged{kDebug, "Closed CLPort '%s'", {kPortId}}));
    EXPECT_FALSE(m_port.Reopen());
}

TEST_F(PortClose, TemporarilyKeepsTheCamera) {
    ConnectPort();
    m_log.Clear();
    EXPECT_TRUE(m_port.Close(true));
    EXPECT_FALSE(m_port.IsConnected());
    EXPECT_FALSE(IsLineOpen());
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
    EXPECT_TRUE(m_port.Reopen());
}

TEST_F(PortClose, FullyAfterATemporaryCloseKeepsTheCamera) {
    ConnectPort();
    m_port.Close(true);
    EXPECT_FALSE(m_port.Close(false));
    EXPECT_FALSE(m_port.Connect(m_deviceId));
    EXPECT_TRUE(m_port.Reopen());
}

TEST_F(PortClose, ClearsTheRemovedFlag) {
    ConnectPort();
    SetOwner();
    Unplug();
    EXPECT_THROW(ReadByte(), CLProtocol::CLErrException);
    Plug();
    EXPECT_TRUE(m_port.Close(false));
    ConnectPort();
    EXPECT_NO_THROW(ReadByte());
}

TEST_F(PortClose, ClearsTheRemovedFlagWithoutAConnection) {
    ConnectPort();
    SetOwner();
    m_port.Close(true);
    Unplug();
    m_port.Reopen();
    Plug();
    EXPECT_EQ(ThrownBy([&] { ReadByte(); }).description, "Device 'Scripted#Port0' already removed/disconnected.");
    EXPECT_FALSE(m_port.Close(true));
    EXPECT_EQ(ThrownBy([&] { ReadByte(); }).description, "Device 'Scripted#Port0' already removed/disconnected.");
    EXPECT_FALSE(m_port.Close(false));
    EXPECT_NO_THROW(ReadByte());
}

TEST_F(PortClose, ThatFailsIsLoggedAndKeepsTheObject) {
    ConnectPort();
    m_log.Clear();
    scripted::Driver().onDisconnect = [](auto) { return -30001; };
    EXPECT_TRUE(m_port.Close(true));
    EXPECT_TRUE(m_port.IsConnected());
    const std::vector<Logged> logged = LoggedIn(kPort);
    ASSERT_EQ(logged.size(), 1u);
    EXPECT_EQ(logged[0].level, kError);
    EXPECT_EQ(logged[0].format, "Could not remove CLPort '%s' DeviceID '%s' Error: '%s'");
    EXPECT_THAT(logged[0].arguments, ElementsAre(kPortId, m_deviceId.str(), testing::HasSubstr("-30001")));
}

TEST_F(PortClose, ThatFailsForgetsTheCameraAllTheSame) {
    ConnectPort();
    scripted::Driver().onDisconnect = [](auto) { return -30001; };
    EXPECT_TRUE(m_port.Close(false));
    EXPECT_EQ(CountLogged(kPort, {kDebug, "Closed CLPort '%s'", {kPortId}}), 1u);
    EXPECT_FALSE(m_port.Connect(m_deviceId));  // the object is still there
}

TEST_F(PortClose, ThatFailedCanBeRepeated) {
    ConnectPort();
    scripted::Driver().onDisconnect = [](auto) { return -30001; };
    m_port.Close(false);
    scripted::Driver().onDisconnect = nullptr;
    EXPECT_TRUE(m_port.Close(false));
    EXPECT_FALSE(m_port.IsConnected());
    EXPECT_TRUE(m_port.Connect(m_deviceId));
}

TEST_F(PortClose, StandsADriverThatThrows) {
    ConnectPort();
    scripted::Driver().onDisconnect = [](auto) -> std::int32_t { throw 1; };
    EXPECT_TRUE(m_port.Close(true));
    EXPECT_EQ(CountFormat("Could not remove CLPort '%s' DeviceID '%s' Error: '%s'"), 1u);
    EXPECT_FALSE(IsLineOpen());
}

}  // namespace
}  // namespace Vanto
