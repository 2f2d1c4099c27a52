/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera that refuses is not a camera that is gone: registers, baud rates and descriptions through the whole chain
 */

#include "CLProtocol/CLException.h"
#include "tests/integration/Machine.h"
#include "tests/integration/Removals.h"
#include "tests/integration/SmallDescription.h"

namespace integration {
namespace {

namespace registers = MarlowSim::registers;

constexpr char kRateWarning[] = "Could not set initial baud rate to 23 for device 'Marlow H2048 (21)' Error='";

class Refusals : public Machine {
protected:
    ~Refusals() override {
        if (m_device != nullptr)
            CTlFactory::GetInstance().DestroyDevice(m_device);
    }

    MarlowSim::CameraOptions SmallCamera(const std::string& options = "") {
        m_descriptions.Write("camera.xml", SmallDescription());
        auto camera = Camera("21");
        camera.descriptionFile = m_descriptions / "camera.xml";
        if (!options.empty())
            MarlowSim::SetOptions(camera, options);
        return camera;
    }

    void Open(const MarlowSim::CameraOptions& camera) {
        Add("cam0", camera);
        m_device = CTlFactory::GetInstance().CreateDevice(Partial("21"));
        m_device->Open();
        m_removals.Register(*m_device);
    }
    void Refuse(const char* key, const gencp::Register& reg, const char* status) {
        simulator.SetFault("cam0", key, std::to_string(reg.address) + ":" + status);
    }
    std::int64_t Get(const char* name) const {
        const GenApi::CIntegerPtr node = m_device->GetNodeMap()->GetNode(name);
        return node->GetValue(false, true);
    }
    void Set(const char* name, std::int64_t value) const {
        const GenApi::CIntegerPtr node = m_device->GetNodeMap()->GetNode(name);
        node->SetValue(value);
    }
    std::size_t RateWarnings() const {
        std::size_t count = 0;
        for (const auto& message : m_log.GetMessages())
            count += message.level == kWarning && message.text.rfind(kRateWarning, 0) == 0 ? 1 : 0;
        return count;
    }
    // The device is as good as ever.
    void ExpectHealthy(std::uint32_t bitsPerSecond) {
        EXPECT_EQ(m_removals.Get(), 0);
        EXPECT_EQ(simulator.BitsPerSecond("cam0"), bitsPerSecond);
        Set("Width", 640);
        EXPECT_EQ(Get("Width"), 640);
        EXPECT_NO_THROW(m_device->Close());
        EXPECT_EQ(simulator.BitsPerSecond("cam0"), 9600u);
    }

    Removals m_removals;
    scripted::TemporaryFolder m_descriptions;
    Vanto::IVantoDevice* m_device = nullptr;
};

TEST_F(Refusals, OfAWriteLeaveTheDeviceOpenAndTheValueAsItWas) {
    Open(SmallCamera());
    Refuse("refuse-write", registers::kWidth, "0x8006");
    EXPECT_THROW(Set("Width", 640), GenICam::AccessException);
    EXPECT_THROW(Set("Width", 640), GenICam::AccessException);
    EXPECT_EQ(Get("Width"), 2048);
    Set("BlackLevelRaw", 7);
    EXPECT_EQ(Get("BlackLevelRaw"), 7);
    simulator.SetFault("cam0", "refuse-write", "none");
    ExpectHealthy(921600);
}

TEST_F(Refusals, OfAReadLeaveTheDeviceOpen) {
    Open(SmallCamera());
    Refuse("refuse-read", registers::kBlackLevelRaw, "0x8006");
    EXPECT_THROW(Get("BlackLevelRaw"), GenICam::AccessException);
    EXPECT_EQ(Get("Width"), 2048);
    ExpectHealthy(921600);
}

TEST_F(Refusals, AreExceptionsOfAFittingKind) {
    Open(SmallCamera());
    Refuse("refuse-write", registers::kWidth, "0x8002");
    EXPECT_THROW(Set("Width", 640), GenICam::InvalidArgumentException);
    Refuse("refuse-write", registers::kWidth, "0x8003");
    EXPECT_THROW(Set("Width", 640), GenICam::OutOfRangeException);
    Refuse("refuse-write", registers::kWidth, "0x8004");
    EXPECT_THROW(Set("Width", 640), GenICam::AccessException);
    Refuse("refuse-write", registers::kWidth, "0x8007");
    EXPECT_THROW(Set("Width", 640), GenICam::TimeoutException);
    Refuse("refuse-write", registers::kWidth, "0xC123");
    EXPECT_THROW(Set("Width", 640), GenICam::AccessException);
    simulator.SetFault("cam0", "refuse-write", "none");
    ExpectHealthy(921600);
}

TEST_F(Refusals, OfACameraThatStaysPendingAreTimeouts) {
    Open(SmallCamera());
    simulator.SetFault("cam0", "always-pending", "on");
    EXPECT_THROW(Get("Width"), GenICam::TimeoutException);
    simulator.SetFault("cam0", "always-pending", "off");
    EXPECT_EQ(Get("Width"), 2048);
    ExpectHealthy(921600);
}

TEST_F(Refusals, AreNoneOfACameraThatFallsSilent) {
    Open(SmallCamera());
    simulator.SetFault("cam0", "silent", "on");
    EXPECT_THROW(Get("Width"), CLProtocol::CLErrException);
    EXPECT_EQ(m_removals.Get(), 1);
}

TEST_F(Refusals, OfAPendingCameraEndItsProbe) {
    Add("cam0", SmallCamera("always-pending=on"));
    EXPECT_TRUE(Enumerate().empty());
    simulator.SetFault("cam0", "always-pending", "off");
    EXPECT_EQ(Enumerate().size(), 1u);
}

class RatesThatCannotBe : public Refusals, public testing::WithParamInterface<const char*> {};

TEST_P(RatesThatCannotBe, LeaveTheDeviceOpenAtTheRateBefore) {
    Open(SmallCamera(GetParam()));
    EXPECT_EQ(RateWarnings(), 1u);
    ExpectHealthy(9600);
}

INSTANTIATE_TEST_SUITE_P(Of, RatesThatCannotBe,
                         testing::Values("line-limit=115200", "rates=0x1f,listed-rates=0xff", "rates=0x01",
                                         "serial-registers=off", "serial-registers=lost", "refuse-write=0x10004:0x8006",
                                         "refuse-read=0x10000:0x8006"));

TEST_F(Refusals, OfARateInTheMiddleOfWorkLeaveTheDeviceOpen) {
    Open(SmallCamera("line-limit=115200"));
    const GenApi::CEnumerationPtr rate = m_device->GetNodeMap()->GetNode("ClSerialPortBaudRate");
    EXPECT_THROW(rate->SetIntValue(23), GenICam::OutOfRangeException);
    EXPECT_EQ(rate->GetIntValue(false, true), 15);
    ExpectHealthy(9600);
}

TEST_F(Refusals, OfARateDuringTheFetchLeaveTheDescription) {
    Add("cam0", Camera("21"));
    simulator.SetFault("cam0", "line-limit", "230400");
    m_device = CTlFactory::GetInstance().CreateDevice(Partial("21"));
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), 9600u);
    EXPECT_NE(m_device->GetNodeMap()->GetNode("PixelFormat"), nullptr);
}

class Descriptions : public Refusals {
protected:
    std::int64_t CreateAndReadWidth() {
        m_device = CTlFactory::GetInstance().CreateDevice(Partial("21"));
        m_device->Open();
        const std::int64_t width = Get("Width");
        m_device->Close();
        CTlFactory::GetInstance().DestroyDevice(std::exchange(m_device, nullptr));
        return width;
    }
    // The same version, and even the same size: only the address of a feature is another.
    MarlowSim::CameraOptions ChangedCamera(const std::string& options = "") {
        auto camera = SmallCamera(options);
        std::string text = SmallDescription();
        const std::string address = std::to_string(registers::kWidth.address);
        text.replace(text.find(address), address.size(), std::to_string(registers::kSensorHeight.address));
        m_descriptions.Write("changed.xml", text);
        camera.descriptionFile = m_descriptions / "changed.xml";
        camera.model = "H4096";
        return camera;
    }
    std::uint64_t BytesOut() const { return simulator.StatisticsOf("cam0").bytesOut; }
};

TEST_F(Descriptions, AreTakenFromTheCacheWhileTheCameraHoldsThem) {
    Add("cam0", SmallCamera());
    EXPECT_EQ(CreateAndReadWidth(), 2048);
    simulator.ResetStatistics("cam0");
    EXPECT_EQ(CreateAndReadWidth(), 2048);
    EXPECT_LT(BytesOut(), SmallDescription().size());
}

TEST_F(Descriptions, ThatChangedWithoutANewVersionAreFetchedAgain) {
    Add("cam0", SmallCamera("model=H4096"));
    EXPECT_EQ(CreateAndReadWidth(), 4096);
    simulator.Exchange("cam0", ChangedCamera());
    EXPECT_EQ(CreateAndReadWidth(), 3072) << "the height of the sensor: the description of now says so";
}

TEST_F(Descriptions, AreNotSharedByTwoCamerasWithOneSerialNumber) {
    Add("cam0", SmallCamera("model=H4096"));
    EXPECT_EQ(CreateAndReadWidth(), 4096);
    simulator.Exchange("cam0", ChangedCamera());
    EXPECT_EQ(CreateAndReadWidth(), 3072);
    simulator.Exchange("cam0", SmallCamera("model=H4096"));
    EXPECT_EQ(CreateAndReadWidth(), 4096);
}

TEST_F(Descriptions, WithoutASumAreFetchedEachTime) {
    Add("cam0", SmallCamera("model=H4096,sha1=off"));
    EXPECT_EQ(CreateAndReadWidth(), 4096);
    simulator.Exchange("cam0", ChangedCamera("sha1=off"));
    EXPECT_EQ(CreateAndReadWidth(), 3072);
}

}  // namespace
}  // namespace integration
