/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of learning which camera is on a port
 */

#include <cstring>
#include <future>

#include "CLProtocol/CLException.h"
#include "tests/VantoCLSer/PortFixture.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kOther[] = "Marlow#Heron#H2048#5678";
constexpr char kGiveUp[] = "Seems there is no device connected to port '%s'. Skipping further probes.";
constexpr char kRetry[] = "Error accessing port '%s'. Retrying!";
constexpr char kGeneric[] = "Port '%s': Generic Exceptiopn! '%s'";
constexpr char kNoNode[] = "Device is opened but 'DeviceID' node not found. Performing a full probe.";

class PortProbe : public PortTest {
protected:
    PortProbe() {
        for (const char* name : {"Marlow", "Marlow2", "Marlow3"})
            m_templates.push_back(scripted::FullDeviceId(name));
    }

    gcstring Probe() { return m_port.Probe(&m_templates); }

    // Lets the driver answer a number of probes by codes, those of its templates in order.
    void Answer(std::vector<std::int32_t> codes) {
        scripted::Driver().onProbe = [this, codes](CLProtocol::ISerial*, const char* text, char* deviceId,
                                                   std::uint32_t* size, std::uint32_t* cookie, std::uint32_t) {
            m_probed.emplace_back(text);
            const std::int32_t code = m_probed.size() <= codes.size() ? codes[m_probed.size() - 1] : kEmpty;
            *cookie = 0;
            if (code == kThrow)
                throw std::runtime_error("driver's own");
            if (code != kEmpty && code != kFound)
                return code;
            const std::string found = code == kFound ? kCamera : "";
            std::memcpy(deviceId, found.c_str(), found.size() + 1);
            *size = static_cast<std::uint32_t>(found.size() + 1);
            if (code == kFound)
                *cookie = 77;
            scripted::DriverScript& driver = scripted::Driver();
            const std::lock_guard lock(driver.mutex);
            if (code == kFound)
                driver.cookies[77] = kCamera;
            return 0;
        };
    }

    static constexpr std::int32_t kFound = 1;
    static constexpr std::int32_t kEmpty = 2;
    static constexpr std::int32_t kThrow = 3;

    gcstring_vector m_templates;
    std::vector<std::string> m_probed;
};

TEST_F(PortProbe, FindsTheCamera) {
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_FALSE(IsLineOpen());
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(PortProbe, UsesAllTemplatesWhenItIsGivenNone) {
    scripted::Driver().templates = "Another\tMarlow";
    EXPECT_EQ(m_port.Probe(), m_deviceId);
}

TEST_F(PortProbe, FindsNothingWithoutTemplates) {
    m_templates.clear();
    EXPECT_EQ(Probe(), "");
    EXPECT_EQ(Openings(), 0);
}

TEST_F(PortProbe, SetsTheTimeOut) {
    Probe();
    EXPECT_EQ(scripted::Driver().lastTimeout, 400u);
}

TEST_F(PortProbe, DoesNotChangeTheKnownCamera) {
    ConnectPort();
    m_port.Close(true);
    scripted::Serial().SetCamera(0, kOther);
    EXPECT_EQ(Probe(), scripted::FullDeviceId(kOther).c_str());
    EXPECT_FALSE(m_port.IsConnected());
    EXPECT_FALSE(m_port.Reopen());  // still wants the first one
}

TEST_F(PortProbe, LeavesAFreshPortFresh) {
    Probe();
    EXPECT_TRUE(m_port.Connect(m_deviceId));
}

TEST_F(PortProbe, LeavesAConnectedPortConnectedForOthers) {
    ConnectPort();
    bool wasConnected = false;
    std::future<bool> closed;
    scripted::Driver().onProbe = [&](auto...) {
        wasConnected = m_port.IsConnected();
        if (!closed.valid())
            closed = std::async(std::launch::async, [this] { return m_port.Close(false); });
        return -10004;
    };
    EXPECT_EQ(Probe(), "");
    EXPECT_TRUE(wasConnected);
    closed.wait();
    scripted::Driver().onProbe = nullptr;
    EXPECT_FALSE(m_port.IsConnected());
}

TEST_F(PortProbe, LetsADeviceThatIsClosedMeanwhileBeOpenedAgain) {
    ConnectPort();
    std::future<bool> closed;
    Answer({kFound, kFound});
    const auto answer = scripted::Driver().onProbe;
    scripted::Driver().onProbe = [&](auto... arguments) {
        if (!closed.valid())
            closed = std::async(std::launch::async, [this] { return m_port.Close(false); });
        return answer(arguments...);
    };
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_TRUE(closed.get());
    scripted::Driver().onProbe = nullptr;
    EXPECT_TRUE(m_port.Connect(m_deviceId));
}

TEST_F(PortProbe, DoesNotRemoveADeviceThatCloses) {
    const auto owner = SetOwner();
    ConnectPort();
    owner->onGetNodeMap = [this] {
        m_port.SetOwner(nullptr);
        m_port.Close(false);
    };
    EXPECT_EQ(Probe(), "");
    EXPECT_EQ(owner->removals, 0);
    ConnectPort();
    const auto next = SetOwner();
    EXPECT_NO_THROW(ReadByte());
}

TEST_F(PortProbe, DoesNotRemoveTheNextDevice) {
    const auto owner = SetOwner();
    ConnectPort();
    scripted::Driver().SetRegister(kSerialNumberAddress, "5678");
    std::shared_ptr<Owner> next;
    owner->onGetNodeMap = [&] { next = SetOwner(); };
    EXPECT_EQ(Probe(), "");
    EXPECT_EQ(owner->removals, 0);
    EXPECT_EQ(next->removals, 0);
    EXPECT_NO_THROW(ReadByte());
}

TEST_F(PortProbe, TriesTemplatesInOrderUntilOneFinds) {
    Answer({kEmpty, kFound});
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_THAT(m_probed, ElementsAre("Marlow", "Marlow2"));
}

TEST_F(PortProbe, TriesATemplateWithoutAResultOnce) {
    Answer({});
    EXPECT_EQ(Probe(), "");
    EXPECT_THAT(m_probed, ElementsAre("Marlow", "Marlow2", "Marlow3"));
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

class PortProbeNoAnswer : public PortProbe, public testing::WithParamInterface<std::int32_t> {};

TEST_P(PortProbeNoAnswer, StopsAllProbing) {
    Answer({GetParam(), kFound});
    EXPECT_EQ(Probe(), "");
    EXPECT_THAT(m_probed, ElementsAre("Marlow"));
    EXPECT_THAT(LoggedIn(kTl), ElementsAre(Logged{kWarning, kGiveUp, {kPortId}}));
    EXPECT_THAT(LoggedIn(kPort), IsEmpty());
}

TEST_P(PortProbeNoAnswer, StopsAllProbingOnALaterAttempt) {
    Answer({kEmpty, -30001, GetParam(), kFound});
    EXPECT_EQ(Probe(), "");
    EXPECT_THAT(m_probed, ElementsAre("Marlow", "Marlow2", "Marlow2"));
    EXPECT_THAT(LoggedIn(kTl), ElementsAre(Logged{kWarning, kRetry, {kPortId}}, Logged{kWarning, kGiveUp, {kPortId}}));
}

INSTANTIATE_TEST_SUITE_P(Codes, PortProbeNoAnswer, testing::Values(-10004, -30209),
                         [](const auto& test) { return "Code" + std::to_string(-test.param); });

TEST_F(PortProbe, TriesATemplateTwiceAfterAnotherCode) {
    Answer({-30001, -30001, kFound});
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_THAT(m_probed, ElementsAre("Marlow", "Marlow", "Marlow2"));
    EXPECT_THAT(LoggedIn(kTl), ElementsAre(Logged{kWarning, kRetry, {kPortId}}));
}

TEST_F(PortProbe, FindsTheCameraOnTheSecondAttempt) {
    Answer({-10003, kFound});
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_THAT(m_probed, ElementsAre("Marlow", "Marlow"));
}

TEST_F(PortProbe, CountsAttemptsPerTemplate) {
    Answer({-30001, -30002, -30003, -30004, -30005, -30006, kFound});
    EXPECT_EQ(Probe(), "");
    EXPECT_THAT(m_probed, ElementsAre("Marlow", "Marlow", "Marlow2", "Marlow2", "Marlow3", "Marlow3"));
    EXPECT_EQ(CountFormat(kRetry), 3u);
}

TEST_F(PortProbe, GoesOnWithTheNextTemplateAfterAnExceptionWithoutACode) {
    Answer({kThrow, kFound});
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_THAT(m_probed, ElementsAre("Marlow", "Marlow2"));
    const std::vector<Logged> logged = LoggedIn(kTl);
    ASSERT_EQ(logged.size(), 1u);
    EXPECT_EQ(logged[0].level, kWarning);
    EXPECT_EQ(logged[0].format, kGeneric);
    EXPECT_THAT(logged[0].arguments, ElementsAre(kPortId, testing::HasSubstr("driver's own")));
}

TEST_F(PortProbe, EndsARetryWithAnExceptionWithoutACode) {
    Answer({-30001, kThrow, kFound});
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_THAT(m_probed, ElementsAre("Marlow", "Marlow", "Marlow2"));
}

TEST_F(PortProbe, ClosesAndReopensAConnection) {
    ConnectPort();
    m_log.Clear();
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_TRUE(m_port.IsConnected());
    EXPECT_EQ(Openings(), 3);
    EXPECT_THAT(LoggedIn(kPort), ElementsAre(Logged{kDebug, "Reopening CLPort '%s'", {kPortId}}));
}

TEST_F(PortProbe, LeavesAClosedConnectionClosed) {
    ConnectPort();
    m_port.Close(true);
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_FALSE(m_port.IsConnected());
}

TEST_F(PortProbe, FiresRemovalWhenTheConnectionCannotBeReopened) {
    ConnectPort();
    const auto owner = SetOwner();
    owner->isOpen = false;
    Unplug();
    EXPECT_EQ(Probe(), "");
    EXPECT_EQ(owner->removals, 1);
    EXPECT_EQ(CountLogged(kPort, RemovalMessage()), 1u);
}

class PortQuickCheck : public PortProbe {
protected:
    PortQuickCheck() {
        ConnectPort();
        m_log.Clear();
    }
    static int Probes() { return static_cast<int>(scripted::Driver().CountCalls("clpProbeDevice")) - 1; }
};

TEST_F(PortQuickCheck, BelievesTheOpenDevice) {
    SetOwner();
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_EQ(Probes(), 0);
    EXPECT_EQ(Openings(), 1);
    EXPECT_THAT(m_log.GetMessages(), IsEmpty());
}

TEST_F(PortQuickCheck, FiresRemovalForAnotherCamera) {
    const auto owner = SetOwner();
    scripted::Driver().SetRegister(kSerialNumberAddress, "5678");
    EXPECT_EQ(Probe(), "");
    EXPECT_EQ(owner->removals, 1);
    EXPECT_EQ(Probes(), 0);
    EXPECT_THAT(LoggedIn(kPort), ElementsAre(RemovalMessage()));
}

TEST_F(PortQuickCheck, IgnoresTheCache) {
    const auto owner = SetOwner();
    EXPECT_EQ(Probe(), m_deviceId);
    scripted::Driver().SetRegister(kSerialNumberAddress, "5678");
    EXPECT_EQ(Probe(), "");
}

TEST_F(PortQuickCheck, OpensAnAutoClosedConnection) {
    SetOwner();
    m_port.Close(true);
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_TRUE(m_port.IsConnected());
}

TEST_F(PortQuickCheck, FindsNothingWhenTheCameraDoesNotAnswer) {
    const auto owner = SetOwner();
    Unplug();
    EXPECT_EQ(Probe(), "");
    EXPECT_EQ(Probes(), 0);
    EXPECT_EQ(owner->removals, 1);  // by the read
}

TEST_F(PortQuickCheck, FindsNothingAfterRemoval) {
    SetOwner();
    Unplug();
    Probe();
    Plug();
    EXPECT_EQ(Probe(), "");
    EXPECT_EQ(Probes(), 0);
}

TEST_F(PortQuickCheck, NeedsTheNode) {
    SetOwner("");
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_EQ(Probes(), 2);  // and the reopening
    const std::vector<Logged> logged = LoggedIn(kPort);
    ASSERT_FALSE(logged.empty());
    EXPECT_EQ(logged[0], (Logged{kWarning, kNoNode, {}}));
    EXPECT_THAT(LoggedIn(kTl), IsEmpty());
}

TEST_F(PortQuickCheck, NeedsANodeWithAValue) {
    SetOwner("<Port Name=\"DeviceID\"/>");
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_EQ(Probes(), 2);
    EXPECT_EQ(CountLogged(kPort, {kWarning, kNoNode, {}}), 1u);
}

TEST_F(PortQuickCheck, NeedsANodeMap) {
    SetOwner()->hasNodeMap = false;
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_EQ(CountLogged(kPort, {kWarning, kNoNode, {}}), 1u);
}

TEST_F(PortQuickCheck, NeedsAnOpenDevice) {
    SetOwner()->isOpen = false;
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_EQ(Probes(), 2);
    EXPECT_EQ(CountFormat(kNoNode), 0u);
}

TEST_F(PortQuickCheck, NeedsAKnownCamera) {
    m_port.Close(false);
    SetOwner();
    EXPECT_EQ(Probe(), m_deviceId);
    EXPECT_EQ(Probes(), 1);
}

}  // namespace
}  // namespace Vanto
