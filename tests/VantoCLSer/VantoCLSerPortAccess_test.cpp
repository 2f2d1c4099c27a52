/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of register accesses, descriptions and removal
 */

#include <thread>

#include "CLProtocol/CLException.h"
#include "tests/VantoCLSer/PortFixture.h"

namespace Vanto {
namespace {

using namespace clser_test;
using CLProtocol::CLErrException;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kClError[] = "Could not %s from CLSer port '%s'. CL Error: %i '%s'";
constexpr char kGenICamError[] = "Could not %s from CLSer port '%s'. GenICam Error: '%s'";
constexpr char kRemoved[] = "Device 'Scripted#Port0' already removed/disconnected.";

class PortAccess : public PortTest {
protected:
    PortAccess() { ConnectPort(); }
};

TEST_F(PortAccess, ReadsRegisters) {
    scripted::Driver().SetRegister(0x123456789a, "text");
    char buffer[4];
    m_port.Read(buffer, 0x123456789a, 4);
    EXPECT_EQ(std::string(buffer, 4), "text");
}

TEST_F(PortAccess, WritesRegisters) {
    m_port.Write("text", 0x1000, 4);
    EXPECT_EQ(scripted::Driver().GetRegister(0x1000, 4), "text");
}

TEST_F(PortAccess, OpensAClosedConnection) {
    m_port.Close(true);
    m_log.Clear();
    EXPECT_NO_THROW(ReadByte());
    EXPECT_TRUE(m_port.IsConnected());
    EXPECT_THAT(LoggedIn(kPort), ElementsAre(Logged{kDebug, "Reopening CLPort '%s'", {kPortId}}));
    m_port.Close(true);
    EXPECT_NO_THROW(WriteByte(1));
}

TEST_F(PortAccess, LogsNothingOnSuccess) {
    m_log.Clear();
    ReadByte();
    WriteByte(1);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(PortAccess, FailsOnAPortThatWasNeverConnected) {
    CVantoCLSerPort port(kPortId);
    const auto owner = std::make_shared<Owner>(port);
    port.SetOwner(owner);
    std::uint8_t byte = 0;
    EXPECT_EQ(ThrownBy([&] { port.Read(&byte, 0, 1); }),
              (Thrown{"RuntimeException", "Could not reopen CLPort 'Scripted#Port0'", kPortSource}));
    EXPECT_EQ(owner->removals, 1);
}

TEST_F(PortAccess, FiresRemovalWhenTheConnectionCannotBeOpened) {
    const auto owner = SetOwner();
    m_port.Close(true);
    scripted::Driver().onProbe = [](auto...) { return -30001; };
    EXPECT_EQ(ThrownBy([&] { ReadByte(); }),
              (Thrown{"RuntimeException", "Could not reopen CLPort 'Scripted#Port0'", kPortSource}));
    EXPECT_EQ(owner->removals, 1);
    EXPECT_EQ(CountLogged(kPort, RemovalMessage()), 1u);
}

TEST_F(PortAccess, FiresRemovalOnceWhenTheCameraIsGone) {
    const auto owner = SetOwner();
    m_port.Close(true);
    Unplug();
    EXPECT_EQ(ThrownBy([&] { ReadByte(); }).description, "Could not reopen CLPort 'Scripted#Port0'");
    EXPECT_EQ(owner->removals, 1);
    EXPECT_EQ(CountLogged(kPort, RemovalMessage()), 1u);
}

TEST_F(PortAccess, LogsACameraLinkErrorOfARead) {
    scripted::Driver().onRead = [](auto...) { return -30001; };
    const Thrown thrown = ThrownBy<CLErrException>([&] { ReadByte(); });
    EXPECT_EQ(CountLogged(kPort, {kError, kClError, {"read", kPortId, "-30001", thrown.description}}), 1u);
}

TEST_F(PortAccess, LogsACameraLinkErrorOfAWriteAsFrom) {
    scripted::Driver().onWrite = [](auto...) { return -30001; };
    const Thrown thrown = ThrownBy<CLErrException>([&] { WriteByte(1); });
    EXPECT_EQ(CountLogged(kPort, {kError, kClError, {"write", kPortId, "-30001", thrown.description}}), 1u);
    EXPECT_EQ(
        m_log.CountText(
            "Could not write from CLSer port 'Scripted#Port0'. CL Error: -30001 '" + thrown.description + "'", kError),
        1u);
}

TEST_F(PortAccess, PassesTheErrorOn) {
    scripted::Driver().onRead = [](auto...) { return -10003; };
    try {
        ReadByte();
        FAIL();
    } catch (const CLErrException& error) {
        EXPECT_EQ(error.GetErrorCode(), -10003);
    }
}

class PortAccessCode : public PortAccess, public testing::WithParamInterface<std::int32_t> {};

TEST_P(PortAccessCode, FiresRemoval) {
    const auto owner = SetOwner();
    scripted::Driver().onWrite = [](auto...) { return GetParam(); };
    EXPECT_THROW(WriteByte(1), CLErrException);
    EXPECT_EQ(owner->removals, 1);
    EXPECT_EQ(CountLogged(kPort, RemovalMessage()), 1u);
}

INSTANTIATE_TEST_SUITE_P(Any, PortAccessCode, testing::Values(-10003, -10004, -10006, -20103, -30000, -30209, -30999),
                         [](const auto& test) { return "Code" + std::to_string(-test.param); });

class PortAccessRefusal : public PortAccess, public testing::WithParamInterface<std::int32_t> {};

TEST_P(PortAccessRefusal, LeavesTheDeviceThere) {
    const auto owner = SetOwner();
    scripted::Driver().onWrite = [](auto...) { return GetParam(); };
    EXPECT_THROW(WriteByte(1), GenICam::GenericException);
    EXPECT_EQ(owner->removals, 0);
    EXPECT_EQ(CountLogged(kPort, RemovalMessage()), 0u);
    scripted::Driver().onWrite = nullptr;
    EXPECT_NO_THROW(WriteByte(1));
}

INSTANTIATE_TEST_SUITE_P(Any, PortAccessRefusal,
                         testing::Values(-10008, -20106, -20108, -30102, -30104, -30106, -30107, -30199, -30214),
                         [](const auto& test) { return "Code" + std::to_string(-test.param); });

TEST_F(PortAccess, LogsARefusalWithoutACode) {
    scripted::Driver().onWrite = [](auto...) { return -30104; };
    const Thrown thrown = ThrownBy<GenICam::AccessException>([&] { WriteByte(1); });
    EXPECT_EQ(
        m_log.CountText("Could not write from CLSer port 'Scripted#Port0'. GenICam Error: '" + thrown.description + "'",
                        kError),
        1u);
}

TEST_F(PortAccess, LogsBeforeItFiresRemoval) {
    SetOwner();
    m_log.Clear();
    scripted::Driver().onRead = [](auto...) { return -30001; };
    EXPECT_THROW(ReadByte(), CLErrException);
    const std::vector<Logged> logged = LoggedIn(kPort);
    ASSERT_EQ(logged.size(), 2u);
    EXPECT_EQ(logged[0].format, kClError);
    EXPECT_EQ(logged[1], RemovalMessage());
}

TEST_F(PortAccess, IsRemovedBehindTheLineThatSaysSo) {
    const auto owner = SetOwner();
    Unplug();
    int accesses = 0;
    const tracelog::LogSubscription reader(
        [&](const tracelog::LogMessage& message) {
            if (message.text.starts_with("Device removal for PortID")) {
                ++accesses;
                EXPECT_THROW(ReadByte(), CLErrException);
            }
        },
        "Vanto.CLSer.Port:debug");
    EXPECT_THROW(ReadByte(), CLErrException);
    EXPECT_EQ(ThrownBy([&] { ReadByte(); }), (Thrown{"RuntimeException", kRemoved, kPortSource}));
    EXPECT_EQ(accesses, 1);
    EXPECT_EQ(owner->removals, 1);
}

TEST_F(PortAccess, IsNotMarkedByARemovalThatComesBehindAFullClose) {
    const auto owner = SetOwner();
    Unplug();
    const tracelog::LogSubscription closer(
        [&](const tracelog::LogMessage& message) {
            if (message.text.starts_with("Device removal for PortID"))
                m_port.Close(false);
        },
        "Vanto.CLSer.Port:debug");
    EXPECT_THROW(ReadByte(), CLErrException);
    Plug();
    ConnectPort();
    EXPECT_NO_THROW(ReadByte());
}

TEST_F(PortAccess, ThrowsAtOnceAfterRemoval) {
    const auto owner = SetOwner();
    Unplug();
    EXPECT_THROW(WriteByte(1), CLErrException);
    Plug();
    const int calls = scripted::Serial().calls;
    m_log.Clear();
    EXPECT_EQ(ThrownBy([&] { WriteByte(1); }), (Thrown{"RuntimeException", kRemoved, kPortSource}));
    EXPECT_EQ(ThrownBy([&] { ReadByte(); }), (Thrown{"RuntimeException", kRemoved, kPortSource}));
    EXPECT_EQ(scripted::Serial().calls, calls);
    EXPECT_EQ(owner->removals, 1);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(PortAccess, IsNotRemovedWithoutAnOwner) {
    Unplug();
    EXPECT_THROW(ReadByte(), CLErrException);
    EXPECT_THROW(ReadByte(), CLErrException);
    Plug();
    EXPECT_NO_THROW(ReadByte());
}

TEST_F(PortAccess, LogsAnExceptionWithoutACode) {
    const auto owner = SetOwner();
    scripted::Driver().onRead = [](auto...) -> std::int32_t { throw std::runtime_error("driver's own %s%n"); };
    const Thrown thrown = ThrownBy([&] { ReadByte(); });
    EXPECT_THAT(thrown.description, HasSubstr("driver's own %s%n"));
    EXPECT_EQ(CountLogged(kPort, {kError, kGenICamError, {"read", kPortId, thrown.description}}), 1u);
    EXPECT_EQ(owner->removals, 0);
}

TEST_F(PortAccess, GoesOnAfterAnExceptionWithoutACode) {
    SetOwner();
    scripted::Driver().onWrite = [](auto...) -> std::int32_t { throw 1; };
    const Thrown thrown = ThrownBy([&] { WriteByte(1); });
    EXPECT_EQ(CountLogged(kPort, {kError, kGenICamError, {"write", kPortId, thrown.description}}), 1u);
    scripted::Driver().onWrite = nullptr;
    EXPECT_NO_THROW(WriteByte(1));
}

TEST_F(PortAccess, PassesOtherGenICamExceptionsOn) {
    EXPECT_EQ(ThrownBy<GenICam::InvalidArgumentException>([&] { m_port.Read(nullptr, 0, 1); }).type,
              "InvalidArgumentException");
    EXPECT_EQ(CountFormat(kGenICamError), 1u);
}

TEST_F(PortAccess, FiresRemovalWithoutTheLock) {
    const auto owner = SetOwner();
    owner->onRemoval = [this] { std::thread([this] { m_port.Close(false); }).join(); };
    Unplug();
    EXPECT_THROW(ReadByte(), CLErrException);
    EXPECT_FALSE(m_port.IsConnected());
}

TEST_F(PortAccess, KeepsTheOwnerAliveWhileItIsTold) {
    std::weak_ptr<Owner> watched;
    bool wasAlive = false;
    {
        const auto owner = SetOwner();
        watched = owner;
        owner->onRemoval = [&] {
            m_port.SetOwner(nullptr);
            wasAlive = !watched.expired();
        };
    }
    Unplug();
    EXPECT_THROW(ReadByte(), CLErrException);
    EXPECT_TRUE(wasAlive);
    EXPECT_TRUE(watched.expired());
}

TEST_F(PortAccess, TellsTheOwnerOnceWhenManyThreadsFail) {
    const auto owner = SetOwner();
    Unplug();
    std::vector<std::thread> threads;
    for (int count = 0; count < 8; ++count)
        threads.emplace_back([this] { EXPECT_THROW(ReadByte(), GenICam::RuntimeException); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(owner->removals, 1);
    EXPECT_EQ(CountLogged(kPort, RemovalMessage()), 1u);
}

class PortXml : public PortTest {
protected:
    static void SetXml(const std::string& version, const std::string& xml) {
        scripted::DriverScript& driver = scripted::Driver();
        const std::lock_guard lock(driver.mutex);
        driver.xmlIds = "SchemaVersion.1.1@Marlow@XMLVersion." + version;
        driver.xml = {{driver.xmlIds, xml}};
    }
    // A driver without descriptions.
    static void RemoveXml() {
        scripted::DriverScript& driver = scripted::Driver();
        const std::lock_guard lock(driver.mutex);
        driver.xmlIds = "";
        driver.xml.clear();
    }
};

TEST_F(PortXml, IsFetchedForTheCallAlone) {
    SetXml("1.0.0", "<one/>");
    EXPECT_EQ(m_port.GetXML(m_deviceId), "<one/>");
    EXPECT_FALSE(m_port.IsConnected());
    EXPECT_FALSE(IsLineOpen());
    EXPECT_EQ(CountLogged(kPort, {kDebug, "Closed CLPort '%s'", {kPortId}}), 1u);
    EXPECT_TRUE(m_port.Connect(m_deviceId));  // no camera is known any more
}

TEST_F(PortXml, IsAskedForInTheCallAlone) {
    EXPECT_TRUE(m_port.HasXML(m_deviceId));
    EXPECT_FALSE(m_port.IsConnected());
    EXPECT_TRUE(m_port.Connect(m_deviceId));
}

TEST_F(PortXml, LeavesAnOpenConnectionOpen) {
    ConnectPort();
    EXPECT_TRUE(m_port.HasXML(m_deviceId));
    EXPECT_EQ(m_port.GetXML(m_deviceId), "<RegisterDescription/>");
    EXPECT_TRUE(m_port.IsConnected());
    EXPECT_EQ(Openings(), 1);
}

TEST_F(PortXml, CannotBeAskedForWithoutACamera) {
    Unplug();
    const Thrown expected{"RuntimeException", "Could not open port '" + m_deviceId.str() + "'", kPortSource};
    EXPECT_EQ(ThrownBy([&] { m_port.HasXML(m_deviceId); }), expected);
    EXPECT_EQ(ThrownBy([&] { m_port.GetXML(m_deviceId); }), expected);
}

TEST_F(PortXml, CannotBeAskedForAfterATemporaryClose) {
    ConnectPort();
    m_port.Close(true);
    EXPECT_EQ(ThrownBy([&] { m_port.HasXML(m_deviceId); }).description,
              "Could not open port '" + m_deviceId.str() + "'");
    EXPECT_EQ(ThrownBy([&] { m_port.GetXML(m_deviceId); }).description,
              "Could not open port '" + m_deviceId.str() + "'");
}

TEST_F(PortXml, NamesAnyIdentifierInItsError) {
    EXPECT_EQ(ThrownBy([&] { m_port.GetXML("%s%n"); }).description, "Could not open port '%s%n'");
}

TEST_F(PortXml, IsKeptByGetAndFetchedAgainByHas) {
    SetXml("1.0.0", "<one/>");
    EXPECT_EQ(m_port.GetXML(m_deviceId), "<one/>");
    SetXml("2.0.0", "<two/>");
    EXPECT_EQ(m_port.GetXML(m_deviceId), "<one/>");
    EXPECT_TRUE(m_port.HasXML(m_deviceId));
    EXPECT_EQ(m_port.GetXML(m_deviceId), "<two/>");
}

TEST_F(PortXml, IsFetchedOnceForHasAndGet) {
    m_port.HasXML(m_deviceId);
    m_port.GetXML(m_deviceId);
    EXPECT_EQ(scripted::Driver().CountCalls("clpGetXMLIDs"), 1u);
}

TEST_F(PortXml, ThatFailsIsAnExceptionOfHas) {
    RemoveXml();
    EXPECT_THROW(m_port.HasXML(m_deviceId), GenICam::AccessException);
    EXPECT_FALSE(m_port.IsConnected());
    EXPECT_TRUE(m_port.Connect(m_deviceId));
}

TEST_F(PortXml, ThatFailsIsAnEmptyTextOfGet) {
    RemoveXml();
    EXPECT_EQ(m_port.GetXML(m_deviceId), "");
    EXPECT_FALSE(m_port.IsConnected());
    const std::vector<Logged> logged = LoggedIn(kTl);
    ASSERT_EQ(logged.size(), 1u);
    EXPECT_EQ(logged[0].level, kError);
    EXPECT_EQ(logged[0].format, "Exception while calling CCLPort::GetXML error: %s");
    EXPECT_THAT(logged[0].arguments, ElementsAre(HasSubstr("-20102")));
}

TEST_F(PortXml, IsReadAfterARemovalOnAnOpenConnection) {
    ConnectPort();
    SetOwner();
    scripted::Driver().onRead = [](auto...) { return -30001; };
    EXPECT_THROW(ReadByte(), CLErrException);
    EXPECT_TRUE(m_port.HasXML(m_deviceId));
}

}  // namespace
}  // namespace Vanto
