/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Threads that read, write, probe, close and change the time-out of one port that closes itself after a millisecond
 */

#include "tests/VantoCLSer/PortFixture.h"
#include "tests/VantoCLSer/stress/Stress.h"

namespace Vanto {
namespace {

using namespace clser_test;

class PortStress : public PortTest {
protected:
    PortStress() { m_templates.push_back(scripted::FullDeviceId("Marlow")); }

    void DoAny(std::mt19937& random) {
        switch (random() % 12) {
            case 0:
                m_port.Probe(&m_templates);
                break;
            case 1:
                m_port.Close(random() % 2 == 0);
                break;
            case 2:
                m_port.Connect(m_deviceId);
                break;
            case 3:
                m_port.SetAutoCloseTimeout(static_cast<std::uint32_t>(random() % 3));
                break;
            case 4:
                m_port.Reopen();
                break;
            case 5:
                random() % 2 == 0 ? static_cast<void>(m_port.GetXML(m_deviceId))
                                  : static_cast<void>(m_port.HasXML(m_deviceId));
                break;
            case 6:
                std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
                break;
            default:
                random() % 2 == 0 ? static_cast<void>(ReadByte()) : WriteByte(1);
        }
    }

    // Whatever state the threads left behind, the port can be used again.
    void ExpectUsable() {
        Plug();
        m_port.SetAutoCloseTimeout(0);
        m_port.Close(false);
        m_port.Connect(m_deviceId);
        EXPECT_NO_THROW(ReadByte());
        EXPECT_TRUE(m_port.Close(false));
        EXPECT_FALSE(IsLineOpen());
        EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
    }

    gcstring_vector m_templates;
};

TEST_F(PortStress, NeitherHangsNorRaces) {
    const auto owner = SetOwner();
    ConnectPort();
    m_port.SetAutoCloseTimeout(1);
    Stress stress;
    for (int thread = 0; thread < 4; ++thread)
        stress.Add([this](std::mt19937& random) { DoAny(random); });
    EXPECT_GT(stress.Run(kFullTime), 0u);
    m_port.SetOwner(nullptr);
    ExpectUsable();
}

TEST_F(PortStress, EachThreadWithAWorkOfItsOwn) {
    const auto owner = SetOwner();
    ConnectPort();
    m_port.SetAutoCloseTimeout(1);
    Stress stress;
    stress.Add([this](std::mt19937&) { ReadByte(); });
    stress.Add([this](std::mt19937&) { WriteByte(1); });
    stress.Add([this](std::mt19937&) { m_port.Probe(&m_templates); });
    stress.Add([this](std::mt19937& random) {
        m_port.SetAutoCloseTimeout(1);
        if (random() % 8 == 0) {
            m_port.Close(false);
            m_port.Connect(m_deviceId);
        }
    });
    EXPECT_GT(stress.Run(kShortTime), 0u);
    m_port.SetOwner(nullptr);
    ExpectUsable();
}

TEST_F(PortStress, WithACameraThatComesAndGoes) {
    const auto owner = SetOwner();
    owner->onRemoval = [this] { m_port.Close(false); };
    ConnectPort();
    m_port.SetAutoCloseTimeout(1);
    Stress stress;
    for (int thread = 0; thread < 3; ++thread)
        stress.Add([this](std::mt19937& random) { DoAny(random); });
    stress.Add([](std::mt19937& random) {
        random() % 2 == 0 ? Unplug() : Plug();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    });
    EXPECT_GT(stress.Run(kShortTime), 0u);
    m_port.SetOwner(nullptr);
    ExpectUsable();
}

TEST_F(PortStress, WithAnOwnerThatComesAndGoes) {
    ConnectPort();
    m_port.SetAutoCloseTimeout(1);
    Stress stress;
    for (int thread = 0; thread < 3; ++thread)
        stress.Add([this](std::mt19937& random) { DoAny(random); });
    stress.Add([this](std::mt19937&) {
        const auto owner = SetOwner();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        owner->isOpen = false;
        m_port.SetOwner(nullptr);
    });
    EXPECT_GT(stress.Run(kShortTime), 0u);
    ExpectUsable();
}

}  // namespace
}  // namespace Vanto
