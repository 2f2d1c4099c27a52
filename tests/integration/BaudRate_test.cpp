/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Real changes of the baud rate: at the true speed of the line, and with packets of the change lost
 */

#include <map>
#include <thread>

#include "tests/integration/Machine.h"
#include "tests/integration/SmallDescription.h"
#include "tests/support/WaitUntil.h"

namespace integration {
namespace {

constexpr std::uint32_t kSlow = 9600;
constexpr std::uint32_t kFast = 921600;

class BaudRate : public Machine {
protected:
    ~BaudRate() override {
        if (m_device != nullptr)
            CTlFactory::GetInstance().DestroyDevice(m_device);
    }

    void Create() {
        m_device = CTlFactory::GetInstance().CreateDevice(Partial("21"));
        ASSERT_EQ(simulator.BitsPerSecond("cam0"), kSlow);
    }
    std::int64_t Width() const {
        const GenApi::CIntegerPtr node = m_device->GetNodeMap()->GetNode("Width");
        return node->GetValue(false, true);
    }

    std::map<std::string, std::string> Values() const {
        std::map<std::string, std::string> values;
        for (const char* name : {"DeviceModelName", "DeviceID", "Width", "PixelFormat", "ExposureTime", "Gamma"}) {
            const GenApi::CValuePtr node = m_device->GetNodeMap()->GetNode(name);
            values[name] = node->ToString(false, true).c_str();
        }
        return values;
    }

    Vanto::IVantoDevice* m_device = nullptr;
};

TEST_F(BaudRate, RisesToTheFastestAtTheTrueSpeedOfTheLine) {
    auto camera = Camera("21");
    camera.paced = true;
    camera.zip = true;
    Add("cam0", camera);
    Create();
    const auto before = Values();
    m_device->Open();
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), kFast);
    simulator.ResetStatistics("cam0");
    EXPECT_EQ(Values(), before);
    EXPECT_EQ(simulator.StatisticsOf("cam0").noiseBytes, 0u);
    EXPECT_EQ(m_log.CountText("Automatically set baud rate node for device 'Marlow H2048 (21)' to '23' old value was "
                              "15.",
                              kDebug),
              1u);
    m_device->Close();
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), kSlow);
}

TEST_F(BaudRate, StaysWhileThePortIsClosedForInactivity) {
    Add("cam0", Camera("21"));
    const DeviceInfoList records = Enumerate();
    ASSERT_EQ(records.size(), 1u);
    m_device = CTlFactory::GetInstance().CreateDevice(records[0]);
    m_device->Open();
    const GenApi::CIntegerPtr timeout = m_device->GetTLNodeMap()->GetNode("AutoCloseTimeout");
    timeout->SetValue(1);
    EXPECT_TRUE(test_support::WaitUntil([&] { return CTlFactory::GetInstance().IsDeviceAccessible(records[0]); }));
    timeout->SetValue(0);
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), kFast);
    simulator.ResetStatistics("cam0");
    EXPECT_EQ(Width(), 2048);
    EXPECT_EQ(simulator.StatisticsOf("cam0").noiseBytes, 0u);
    EXPECT_EQ(m_log.CountText("Reopening CLPort 'COM_Port#cam0'", kDebug), 1u);
    m_device->Close();
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), kSlow);
}

class BaudRateOnABadLine : public BaudRate {
protected:
    BaudRateOnABadLine() {
        m_descriptions.Write("camera.xml", SmallDescription());
        auto camera = Camera("21");
        camera.descriptionFile = m_descriptions / "camera.xml";
        Add("cam0", camera);
        Create();
    }

    // Both sides are at one rate, whichever.
    void ExpectAgreement() {
        const std::uint64_t noise = simulator.StatisticsOf("cam0").noiseBytes;
        EXPECT_EQ(Width(), 2048);
        EXPECT_EQ(simulator.StatisticsOf("cam0").noiseBytes, noise);
    }

    // The camera hears nothing from when it has acknowledged the new rate until it has gone back to the old one.
    template <class Operation>
    void LoseEveryConfirmation(std::uint64_t packetsBefore, std::uint32_t oldRate, const Operation& operation) {
        MarlowSim::FaultSettings faults;
        faults.silentAfter = packetsBefore;
        simulator.SetFaults("cam0", faults);
        std::thread listensAgain([&] {
            EXPECT_TRUE(test_support::WaitUntil([this] { return simulator.OptionsOf("cam0").faults.silent; }));
            const std::uint64_t bytes = simulator.StatisticsOf("cam0").bytesIn;
            EXPECT_TRUE(test_support::WaitUntil([&] { return simulator.StatisticsOf("cam0").bytesIn > bytes; }));
            EXPECT_TRUE(test_support::WaitUntil([&] { return simulator.BitsPerSecond("cam0") == oldRate; }));
            simulator.SetFaults("cam0", {});
        });
        operation();
        listensAgain.join();
    }

    std::uint64_t Packets() const {
        const auto statistics = simulator.StatisticsOf("cam0");
        return statistics.packetsIn + statistics.packetsOut;
    }

    scripted::TemporaryFolder m_descriptions;
};

constexpr std::uint64_t kChangePackets = 4;   // the rate, and its confirmation, each with an acknowledge
constexpr std::uint64_t kConfirmPackets = 2;  // the last of them

TEST_F(BaudRateOnABadLine, IsAgreedUponWhicheverPacketOfTheNegotiationIsLost) {
    m_device->Open();
    m_device->Close();
    simulator.ResetStatistics("cam0");
    m_device->Open();
    const std::uint64_t packets = Packets();
    m_device->Close();
    ASSERT_GT(packets, kChangePackets);
    for (std::uint64_t index = 0; index < packets; ++index) {
        SCOPED_TRACE("packet " + std::to_string(index) + " of " + std::to_string(packets));
        MarlowSim::FaultSettings faults;
        faults.failAt = index;
        simulator.SetFaults("cam0", faults);
        m_device->Open();
        EXPECT_EQ(simulator.BitsPerSecond("cam0"), kFast);
        ExpectAgreement();
        m_device->Close();
        EXPECT_EQ(simulator.BitsPerSecond("cam0"), kSlow);
    }
}

TEST_F(BaudRateOnABadLine, IsAgreedUponWhicheverPacketOfTheRestoringIsLost) {
    for (std::uint64_t index = 0; index < kChangePackets; ++index) {
        SCOPED_TRACE("packet " + std::to_string(index));
        m_device->Open();
        MarlowSim::FaultSettings faults;
        faults.failAt = index;
        simulator.SetFaults("cam0", faults);
        m_device->Close();
        EXPECT_EQ(simulator.BitsPerSecond("cam0"), kSlow);
    }
    m_device->Open();
    ExpectAgreement();
}

TEST_F(BaudRateOnABadLine, IsNegotiatedAnewWhenNoConfirmationArrives) {
    m_device->Open();
    m_device->Close();
    simulator.ResetStatistics("cam0");
    m_device->Open();
    const std::uint64_t packets = Packets();
    m_device->Close();
    LoseEveryConfirmation(packets - kConfirmPackets, kSlow, [this] { m_device->Open(); });
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), kFast);
    ExpectAgreement();
}

TEST_F(BaudRateOnABadLine, IsRestoredWhenNoConfirmationArrives) {
    m_device->Open();
    LoseEveryConfirmation(kChangePackets - kConfirmPackets, kFast, [this] { m_device->Close(); });
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), kSlow);
    m_device->Open();
    ExpectAgreement();
}

}  // namespace
}  // namespace integration
