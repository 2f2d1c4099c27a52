/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what the host is told about looks and fetches, and of their early end
 */
#include "ActivityTeller.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <mutex>
#include <vector>

#include "CLProtocol/CLPort.h"
#include "clser/ClSerial.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::Activity;
using CLProtocol::CCLPort;
using CLProtocol::CLErrException;
using Kind = Activity::Kind;

constexpr char kPort[] = "Scripted#Port0";
constexpr char kCamera[] = "Marlow#Heron#H2048#1";
constexpr char kId[] = "SchemaVersion.1.1@Marlow#Heron@XMLVersion.1.2.0";
constexpr char kXml[] = "<RegisterDescription ModelName=\"H2048\"/>";

class Activities : public testing::Test {
public:
    Activities() {
        scripted::Serial().SetPorts(1, {kCamera});
        scripted::Driver().xmlIds = kId;
        scripted::Driver().xml = {{kId, kXml}};
        CLProtocol::SetActivityListener([this](const Activity& activity) {
            const std::lock_guard lock(m_mutex);
            m_told.push_back(activity);
        });
    }
    ~Activities() noexcept override {
        CLProtocol::SetStopRequested(false);
        CLProtocol::SetActivityListener({});
    }

protected:
    std::vector<Activity> Told() const {
        const std::lock_guard lock(m_mutex);
        return m_told;
    }
    std::vector<Kind> Kinds() const {
        std::vector<Kind> kinds;
        for (const Activity& activity : Told())
            kinds.push_back(activity.kind);
        return kinds;
    }
    static std::int32_t CodeOfProbe() {
        try {
            CCLPort::ProbeDevice(kPort, scripted::FullDeviceId("Marlow"), 400);
        } catch (const CLErrException& error) {
            return error.GetErrorCode();
        }
        return 0;
    }

    scripted::Environment environment;

private:
    mutable std::mutex m_mutex;
    std::vector<Activity> m_told;
};

TEST_F(Activities, TellThatACameraAnswered) {
    CodeOfProbe();
    ASSERT_EQ(Kinds(), (std::vector{Kind::kAsking, Kind::kAnswered}));
    EXPECT_EQ(Told()[0].deviceId, scripted::FullDeviceId("Marlow"));
    EXPECT_EQ(Told()[1].portId, kPort);
    EXPECT_EQ(Told()[1].deviceId, scripted::FullDeviceId(kCamera));
    EXPECT_EQ(Told()[1].baudRateFlag, CL_BAUDRATE_9600);
}

TEST_F(Activities, TellTheRateAtWhichItAnswered) {
    scripted::Driver().onProbe = [](CLProtocol::ISerial* serial, auto...) {
        return serial->clSetBaudRate(CL_BAUDRATE_115200);
    };
    CodeOfProbe();
    EXPECT_EQ(Told().back().baudRateFlag, CL_BAUDRATE_115200);
}

TEST_F(Activities, TellWhyALookFailed) {
    scripted::Serial().SetCamera(0, "");
    const std::int32_t code = CodeOfProbe();
    ASSERT_EQ(Kinds(), (std::vector{Kind::kAsking, Kind::kFailed}));
    EXPECT_EQ(Told()[1].errorCode, code);
    EXPECT_THAT(Told()[1].reason.str(), testing::HasSubstr("clpProbeDevice"));
}

TEST_F(Activities, TellThatAnotherCameraIsThere) {
    CCLPort port;
    EXPECT_THROW(port.Connect(kPort, scripted::FullDeviceId("Marlow#Heron#H2048#2")), CLErrException);
    EXPECT_EQ(Told().back().kind, Kind::kFailed);
    EXPECT_EQ(Told().back().errorCode, CLProtocol::CLP_NO_DEVICE_FOUND);
}

TEST_F(Activities, TellHowMuchOfADescriptionCameIn) {
    CCLPort port;
    port.Connect(kPort, scripted::FullDeviceId(kCamera));
    port.GetXML(false);
    const Activity last = Told().back();
    EXPECT_EQ(last.kind, Kind::kFetching);
    EXPECT_GT(last.doneBytes, 0u);
    EXPECT_GE(last.totalBytes, sizeof kXml - 1);
}

TEST_F(Activities, AskForASizeOnlyWhereItIsHeard) {
    CLProtocol::SetActivityListener({});
    CCLPort port;
    port.Connect(kPort, scripted::FullDeviceId(kCamera));
    port.GetXML(false);
    EXPECT_EQ(scripted::Driver().CountCalls("clpGetXMLDescription"), 1u);
}

TEST_F(Activities, AskNoPortOnceAnEndIsWanted) {
    CLProtocol::SetStopRequested(true);
    EXPECT_EQ(CodeOfProbe(), CL_ERR_TIMEOUT);
    EXPECT_EQ(scripted::Driver().CountCalls("clpProbeDevice"), 0u);
}

TEST_F(Activities, EndALookThatIsUnderWay) {
    scripted::Driver().onProbe = [](CLProtocol::ISerial* serial, auto...) {
        CLProtocol::SetStopRequested(true);
        char byte = 0;
        CLUINT32 size = 1;
        return serial->clSerialWrite(&byte, &size, 100);
    };
    EXPECT_EQ(CodeOfProbe(), CL_ERR_TIMEOUT);
}

TEST_F(Activities, PutTheRateBackAfterAFetchThatEndedEarly) {
    scripted::DriverScript& driver = scripted::Driver();
    driver.supportedRates = CL_BAUDRATE_9600 | CL_BAUDRATE_115200;
    driver.rate = CL_BAUDRATE_9600;
    CCLPort port;
    port.Connect(kPort, scripted::FullDeviceId(kCamera));
    driver.onSetRate = [&](CLUINT32 rate) {
        CLProtocol::SetStopRequested(rate == CL_BAUDRATE_115200);
        return 0;
    };
    EXPECT_THROW(port.GetXML(false), CLErrException);
    EXPECT_EQ(driver.rates, (std::vector<CLUINT32>{CL_BAUDRATE_115200, CL_BAUDRATE_9600}));
}

TEST_F(Activities, LeaveRegistersAlone) {
    CCLPort port;
    port.Connect(kPort, scripted::FullDeviceId(kCamera));
    CLProtocol::SetStopRequested(true);
    char byte = 0;
    EXPECT_NO_THROW(port.Read(&byte, 0, 1));
}

}  // namespace
