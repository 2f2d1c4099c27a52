/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of descriptions and open devices over real serial lines
 */

#include "tests/integration/Machine.h"
#include "tests/integration/Removals.h"

namespace integration {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr std::chrono::seconds kLong(60);

class UsesADevice : public Machine {
protected:
    UsesADevice() { Add("cam0", Camera("21")); }
    ~UsesADevice() override {
        if (m_device != nullptr)
            CTlFactory::GetInstance().DestroyDevice(m_device);
    }

    void Open() {
        m_device = CTlFactory::GetInstance().CreateDevice(Partial("21"));
        ASSERT_NE(m_device, nullptr);
        m_device->Open();
    }
    std::int64_t Get(const char* name) const {
        const GenApi::CIntegerPtr node = m_device->GetNodeMap()->GetNode(name);
        return node->GetValue(false, true);
    }
    void Set(const char* name, std::int64_t value) const {
        const GenApi::CIntegerPtr node = m_device->GetNodeMap()->GetNode(name);
        node->SetValue(value);
    }
    void SetAutoCloseTimeout(std::int64_t milliseconds) const {
        const GenApi::CIntegerPtr node = m_device->GetTLNodeMap()->GetNode("AutoCloseTimeout");
        node->SetValue(milliseconds);
    }

    Vanto::IVantoDevice* m_device = nullptr;
};

class FetchesADescription : public Machine, public testing::WithParamInterface<bool> {};

TEST_P(FetchesADescription, AsTheCameraHoldsIt) {
    auto camera = Camera("21");
    Add("cam0", camera);
    const std::vector<std::uint8_t> plain = simulator.DescriptionFile("cam0");
    camera.zip = GetParam();
    simulator.Exchange("cam0", camera);
    Vanto::ITransportLayer* const tl = CTlFactory::GetInstance().CreateTl("MarlowCameraLink");
    DeviceInfoList list;
    ASSERT_EQ(tl->EnumerateDevices(list), 1);
    gcstring source;
    gcstring xml;
    tl->GetXmlFileProvider()->ProvideXMLFile(list[0], source, xml);
    EXPECT_EQ(xml.str(), std::string(plain.begin(), plain.end()));
    CTlFactory::GetInstance().ReleaseTl(tl);
}

INSTANTIATE_TEST_SUITE_P(Format, FetchesADescription, testing::Bool(),
                         [](const auto& test) { return test.param ? "Zipped" : "Plain"; });

TEST_F(UsesADevice, ThatItFoundByItsSerialNumber) {
    Open();
    Set("Width", 1024);
    EXPECT_EQ(Get("Width"), 1024);
    m_device->Close();
}

TEST_F(UsesADevice, ThatAnswersForItselfWhileItIsOpen) {
    Add("cam1", Camera("22"));
    Open();
    const std::uint64_t bytes = simulator.StatisticsOf("cam0").noiseBytes;
    EXPECT_THAT(SerialNumbers(), UnorderedElementsAre("21", "22"));
    EXPECT_EQ(simulator.StatisticsOf("cam0").noiseBytes, bytes);
    EXPECT_EQ(m_log.CountFormat("Device is opened but 'DeviceID' node not found. Performing a full probe."), 0u);
    EXPECT_NO_THROW(Get("Width"));
}

TEST_F(UsesADevice, ThatClosesAndOpensItsPort) {
    Open();
    SetAutoCloseTimeout(1);
    EXPECT_TRUE(m_log.WaitForText("AutoClosing CLPort 'COM_Port#cam0' due to inactivity.", kLong));
    EXPECT_NO_THROW(Set("Width", 512));
    EXPECT_EQ(Get("Width"), 512);
    SetAutoCloseTimeout(0);
}

TEST_F(UsesADevice, UntilItsCableIsPulled) {
    Open();
    Removals removals;
    removals.Register(*m_device);
    simulator.Unplug("cam0");
    EXPECT_THROW(Get("Width"), GenICam::GenericException);
    EXPECT_TRUE(removals.Wait(kLong));
    EXPECT_THROW(Get("Width"), GenICam::GenericException);
    EXPECT_EQ(removals.Get(), 1);
    m_device->Close();
    CTlFactory::GetInstance().DestroyDevice(m_device);
    m_device = nullptr;
    simulator.Plug("cam0");
    EXPECT_THAT(SerialNumbers(), ElementsAre("21"));
}

TEST_F(UsesADevice, UntilItIsExchanged) {
    Open();
    Removals removals;
    removals.Register(*m_device);
    auto other = Camera("99");
    other.baud = simulator.BitsPerSecond("cam0");
    simulator.Exchange("cam0", other);
    EXPECT_THAT(SerialNumbers(), testing::IsEmpty());
    EXPECT_EQ(removals.Get(), 1);
    m_device->Close();
    CTlFactory::GetInstance().DestroyDevice(m_device);
    m_device = nullptr;
    EXPECT_THAT(SerialNumbers(), ElementsAre("99"));
}

}  // namespace
}  // namespace integration
