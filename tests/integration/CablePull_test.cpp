/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The cable pulled after each single packet of everything that an application does with a camera
 */

#include <functional>
#include <thread>

#include "tests/integration/Machine.h"
#include "tests/integration/Removals.h"
#include "tests/integration/Resources.h"
#include "tests/integration/SmallDescription.h"
#include "tests/support/WaitUntil.h"

namespace integration {
namespace {

using testing::ElementsAre;

constexpr std::int64_t kWidth = 2048;

std::int64_t Read(Vanto::IVantoDevice& device, const char* name) {
    const GenApi::CIntegerPtr node = device.GetNodeMap()->GetNode(name);
    return node->GetValue(false, true);
}

void Write(Vanto::IVantoDevice& device, const char* name, std::int64_t value) {
    const GenApi::CIntegerPtr node = device.GetNodeMap()->GetNode(name);
    node->SetValue(value);
}

class CablePull : public Machine {
protected:
    using Step = std::function<void()>;

    CablePull() {
        m_descriptions.Write("camera.xml", SmallDescription());
        auto camera = Camera("21");
        camera.descriptionFile = m_descriptions / "camera.xml";
        Add("cam0", camera);
    }

    ~CablePull() override {
        if (m_device != nullptr)
            CTlFactory::GetInstance().DestroyDevice(m_device);
    }

    void Create() { m_device = CTlFactory::GetInstance().CreateDevice(m_record); }
    void CreateAndOpen() {
        Create();
        m_device->Open();
        m_removals->Register(*m_device);
        m_isRegistered = true;
    }
    // The port is closed on return, and does not close by itself after the next access.
    void CloseForInactivity() {
        const GenApi::CIntegerPtr timeout = m_device->GetTLNodeMap()->GetNode("AutoCloseTimeout");
        timeout->SetValue(1);
        EXPECT_TRUE(test_support::WaitUntil([&] { return CTlFactory::GetInstance().IsDeviceAccessible(m_record); }));
        timeout->SetValue(0);
    }
    void ForgetDescription() const {
        for (const auto& file : std::filesystem::directory_iterator(m_surroundings.cache.Path()))
            std::filesystem::remove(file.path());
    }

    // Prepares and acts once with the cable in, to count the packets; then with the cable pulled after each of them.
    void PullAfterEachPacketOf(const Step& prepare, const Step& act) {
        ExpectUsable();  // from now on libraries are loaded, the camera is known and its description is in the cache
        const std::uint64_t packets = CountPackets(prepare, act);
        ASSERT_GT(packets, 0u);
        std::cout << packets << " packets\n";
        const std::size_t resources = Resources();
        for (std::uint64_t index = 1; index <= packets && !HasFatalFailure(); ++index) {
            SCOPED_TRACE("after packet " + std::to_string(index) + " of " + std::to_string(packets));
            PullAfter(index, prepare, act);
        }
        EXPECT_EQ(Resources(), resources);
    }

    Vanto::IVantoDevice* m_device = nullptr;
    CDeviceInfo m_record;
    bool m_releasesTransportLayer = false;

private:
    void Begin(const Step& prepare) {
        m_removals = std::make_unique<Removals>();
        m_isRegistered = false;
        const DeviceInfoList list = Enumerate();
        ASSERT_EQ(list.size(), 1u);
        m_record = list[0];
        prepare();
        m_log.Clear();
    }

    std::uint64_t CountPackets(const Step& prepare, const Step& act) {
        Begin(prepare);
        simulator.ResetStatistics("cam0");
        act();
        const auto statistics = simulator.StatisticsOf("cam0");
        EXPECT_EQ(m_removals->Get(), 0);
        End();
        return statistics.packetsIn + statistics.packetsOut;
    }

    void PullAfter(std::uint64_t packets, const Step& prepare, const Step& act) {
        Begin(prepare);
        const bool wasOpen = m_device != nullptr && m_device->IsOpen();
        MarlowSim::FaultSettings faults;
        faults.dropAfter = packets;
        simulator.SetFaults("cam0", faults);
        ExpectSuccessOrOneError(act);
        simulator.SetFaults("cam0", {});
        simulator.Unplug("cam0");
        if (m_device != nullptr && m_device->IsOpen())
            ExpectOneRemoval();
        else
            EXPECT_EQ(m_removals->Get(), wasOpen ? RestoringFailures() : 0);
        End();
        simulator.Plug("cam0");
        ExpectUsable();
    }

    static void ExpectSuccessOrOneError(const Step& act) {
        try {
            act();
        } catch (const GenICam::GenericException& error) {
            EXPECT_STRNE(error.GetDescription(), "");
        }
    }

    void ExpectOneRemoval() {
        EXPECT_THROW(Read(*m_device, "Width"), GenICam::GenericException);
        EXPECT_THROW(Write(*m_device, "BlackLevelRaw", 0), GenICam::GenericException);
        EXPECT_EQ(m_log.CountFormat("Removal detected. Calling registered removal callbacks."), 1u);
        EXPECT_EQ(m_removals->Get(), m_isRegistered ? 1 : 0);
    }

    int RestoringFailures() const {
        return static_cast<int>(m_log.CountFormat(
            "Could not restore old baud rate for device '%hs'. Baud rate will be left as it is.", kWarning));
    }

    void End() {
        if (m_device != nullptr) {
            if (m_device->IsOpen()) {
                EXPECT_NO_THROW(m_device->Close());
            }
            CTlFactory::GetInstance().DestroyDevice(m_device);
            m_device = nullptr;
        }
        if (m_releasesTransportLayer)
            CTlFactory::GetInstance().ReleaseUnusedTls();
    }

    void ExpectUsable() {
        ASSERT_THAT(SerialNumbers(), ElementsAre("21"));
        Create();
        ASSERT_NO_THROW(m_device->Open());
        EXPECT_EQ(Read(*m_device, "Width"), kWidth);
        EXPECT_EQ(simulator.BitsPerSecond("cam0"), 921600u);
        End();
        EXPECT_EQ(simulator.BitsPerSecond("cam0"), 9600u);
    }

    scripted::TemporaryFolder m_descriptions;
    std::unique_ptr<Removals> m_removals;
    bool m_isRegistered = false;
};

TEST_F(CablePull, WhileEnumerating) {
    PullAfterEachPacketOf([] {}, [] { SerialNumbers(); });
}

TEST_F(CablePull, WhileEnumeratingBesideAnOpenDevice) {
    PullAfterEachPacketOf([this] { CreateAndOpen(); }, [] { SerialNumbers(); });
}

TEST_F(CablePull, WhileCreatingADevice) {
    PullAfterEachPacketOf([] {}, [this] { Create(); });
}

TEST_F(CablePull, WhileFetchingTheDescription) {
    PullAfterEachPacketOf([this] { ForgetDescription(); }, [this] { Create(); });
}

TEST_F(CablePull, WhileFetchingAZippedDescription) {
    auto camera = simulator.OptionsOf("cam0");
    camera.zip = true;
    simulator.Exchange("cam0", camera);
    PullAfterEachPacketOf([this] { ForgetDescription(); }, [this] { Create(); });
}

TEST_F(CablePull, WhileNegotiatingTheBaudRate) {
    PullAfterEachPacketOf([this] { Create(); }, [this] { m_device->Open(); });
}

TEST_F(CablePull, WhileOpeningADevice) {
    PullAfterEachPacketOf(
        [this] {
            CreateAndOpen();
            m_device->Close();
        },
        [this] { m_device->Open(); });
}

TEST_F(CablePull, WhileReading) {
    PullAfterEachPacketOf([this] { CreateAndOpen(); }, [this] { Read(*m_device, "Width"); });
}

TEST_F(CablePull, WhileWriting) {
    PullAfterEachPacketOf([this] { CreateAndOpen(); }, [this] { Write(*m_device, "Width", 1024); });
}

TEST_F(CablePull, WhileClosingADevice) {
    PullAfterEachPacketOf([this] { CreateAndOpen(); }, [this] { m_device->Close(); });
}

// A port that is closed for inactivity when its device is closed keeps its camera and refuses every other connection:
// only a new transport layer gives the camera back.
TEST_F(CablePull, WhileReopeningAPortThatWasClosedForInactivity) {
    m_releasesTransportLayer = true;
    PullAfterEachPacketOf(
        [this] {
            CreateAndOpen();
            CloseForInactivity();
        },
        [this] { Read(*m_device, "Width"); });
}

}  // namespace
}  // namespace integration
