/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the frame of transport layers: who counts and destroys its devices
 */

#include "vanto/internal/TransportLayerPrivateImpl.h"

#include <stdexcept>
#include <thread>

#include "TransportLayerPrivateImplFixture.h"
#include "tests/VantoCLSer/Fixture.h"
#include "tests/include/vanto/internal/TestTl.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::IsEmpty;

class Hook : public IDeviceCreationHook {
    void OnCreateDevice(CDeviceInfo&, gcstring_vector&) override {}
};

TEST_F(Frame, ReturnsThePreviousHook) {
    Hook first;
    Hook second;
    EXPECT_EQ(m_tl.SetCreationHook(&first), nullptr);
    EXPECT_EQ(m_tl.SetCreationHook(&second), &first);
    EXPECT_EQ(m_tl.SetCreationHook(nullptr), &second);
}

TEST_F(Frame, CountsItsMakerAndItsDevices) {
    IVantoDevice* const device = m_tl.CreateDevice(Found("1"));
    m_tl.CreateDevice(Found("2"));
    EXPECT_EQ(m_tl.Release(), 2u);
    m_tl.DestroyDevice(device);
    EXPECT_EQ(m_tl.Release(), 0u);  // only what the second device holds was left
}

TEST_F(Frame, CountsNoDeviceThatCouldNotBeDescribed) {
    PrivateTestDevice::onCreateNodeMap = [] { throw std::runtime_error("of the device"); };
    EXPECT_THROW(m_tl.CreateDevice(Found("1")), std::runtime_error);
    EXPECT_EQ(TestDevice::alive, 0);
    EXPECT_EQ(m_tl.Release(), 0u);
}

TEST_F(Frame, DestroysADeviceOnce) {
    IVantoDevice* const device = m_tl.CreateDevice(Found("1"));
    m_tl.DestroyDevice(device);
    EXPECT_EQ(TestDevice::alive, 0);
    m_log.Clear();
    EXPECT_EQ(
        ThrownBy<GenICam::LogicalErrorException>([&] { m_tl.DestroyDevice(device); }),
        (Thrown{"LogicalErrorException", "Trying to destroy device which hasn't been created by me", kFrameSource}));
    EXPECT_THAT(m_log.GetMessages(), testing::IsEmpty());
    EXPECT_EQ(m_tl.Release(), 0u);
}

TEST_F(Frame, IsToldOfItsLastReleaseOnce) {
    m_tl.CreateDevice(Found("1"));
    EXPECT_EQ(m_tl.Release(), 1u);
    EXPECT_EQ(*m_tl.finalReleases, 0);
    EXPECT_EQ(m_tl.Release(), 0u);
    EXPECT_EQ(*m_tl.finalReleases, 1);
}

TEST_F(Frame, HasNoReferencesBelowNone) {
    EXPECT_EQ(m_tl.Release(), 0u);
    EXPECT_EQ(m_tl.Release(), 0u);
    EXPECT_EQ(*m_tl.finalReleases, 1);
    m_tl.CreateDevice(Found("1"));
    EXPECT_EQ(m_tl.Release(), 0u);  // what the device holds
}

TEST_F(Frame, CountsReleasesOfManyThreads) {
    constexpr int kReleases = 400;
    for (int count = 0; count < kReleases / 2; ++count)
        m_tl.CreateDevice(Found("1"));
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([this] {
            for (int count = 0; count < kReleases / 4; ++count)
                EXPECT_LE(m_tl.Release(), kReleases / 2U);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(*m_tl.finalReleases, 1);
    EXPECT_EQ(m_tl.Release(), 0u);
}

TEST_F(Frame, PassesExceptionsOfItsHooksOn) {
    m_tl.onCreate = [](const CDeviceInfo&) -> IVantoDevice* { throw std::runtime_error("create"); };
    EXPECT_THROW(m_tl.CreateDevice(Found("1")), std::runtime_error);
    m_tl.onAccessible = [] { throw std::runtime_error("accessible"); };
    EXPECT_THROW(m_tl.IsDeviceAccessible(Found("1")), std::runtime_error);
    EXPECT_EQ(m_tl.Release(), 0u);
}

TEST(FrameEnd, DestroysItsParameters) {
    std::weak_ptr<int> held;
    {
        TestTl tl;
        const auto keeps = std::make_shared<int>();
        held = keeps;
        GenApi::Register(tl.GetNodeMap()->GetNode("ChunkNodeMapSupportEnable"), [keeps](GenApi::INode*) {});
    }
    EXPECT_TRUE(held.expired());
}

TEST_F(Frame, DestroysNoDeviceOfOthers) {
    TestTl other;
    IVantoDevice* const device = other.CreateDevice(Found("1"));
    EXPECT_THROW(m_tl.DestroyDevice(device), GenICam::LogicalErrorException);
    EXPECT_THROW(m_tl.DestroyDevice(nullptr), GenICam::LogicalErrorException);
    EXPECT_EQ(TestDevice::alive, 1);
    other.DestroyDevice(device);
}

TEST_F(Frame, DestroysAllDevicesButKeepsTheirReferences) {
    m_tl.CreateDevice(Found("1"));
    m_tl.CreateDevice(Found("2"));
    m_tl.DestroyAll();
    EXPECT_EQ(TestDevice::alive, 0);
    EXPECT_EQ(m_tl.Release(), 2u);
}

TEST_F(Frame, DestroysItsDevicesWhenItGoes) {
    {
        TestTl tl;
        tl.CreateDevice(Found("1"));
        tl.CreateDevice(Found("2"));
        EXPECT_EQ(TestDevice::alive, 2);
    }
    EXPECT_EQ(TestDevice::alive, 0);
}

TEST_F(Frame, GoesWithoutAReferenceLeft) {
    TestTl tl;
    tl.CreateDevice(Found("1"));
    EXPECT_EQ(tl.Release(), 1u);
    EXPECT_EQ(tl.Release(), 0u);
}

TEST_F(Frame, DestroysADeviceWithoutItsRegistrysLock) {
    auto* const device = dynamic_cast<PrivateTestDevice*>(m_tl.CreateDevice(Found("1")));
    // What an application's callback may do in another thread while a device closes.
    device->onDestroy = [this] { std::thread([this] { m_tl.CreateDevice(Found("2")); }).join(); };
    m_tl.DestroyDevice(device);
    EXPECT_EQ(TestDevice::alive, 1);
}

TEST_F(Frame, RegistersAndDestroysInManyThreads) {
    std::vector<std::thread> threads;
    for (int count = 0; count < 4; ++count)
        threads.emplace_back([this] {
            for (int round = 0; round < 50; ++round)
                m_tl.DestroyDevice(m_tl.CreateDevice(Found("1")));
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(TestDevice::alive, 0);
    EXPECT_EQ(m_tl.Release(), 0u);
}

TEST_F(Frame, RefusesADeviceThatIsNone) {
    m_tl.onCreate = [](const CDeviceInfo&) { return nullptr; };
    EXPECT_EQ(
        ThrownBy([&] { m_tl.CreateDevice(Found("1")); }),
        (Thrown{"RuntimeException", "Internal error. Device creation failed. Created device is NULL.", kFrameSource}));
}

TEST_F(Frame, RefusesADeviceWithoutThePrivateInterface) {
    TestDevice device(Found("1"));
    m_tl.onCreate = [&](const CDeviceInfo&) { return &device; };
    EXPECT_EQ(ThrownBy([&] { m_tl.CreateDevice(Found("1")); }),
              (Thrown{"RuntimeException",
                      "Internal error. Device creation failed. Device doesn't implement IVantoDevicePrivate interface",
                      kFrameSource}));
    EXPECT_EQ(
        CountLogged(kFrame,
                    {kError, "Device creation failed. Device doesn't implement IVantoDevicePrivate interface", {}}),
        1u);
    EXPECT_EQ(TestDevice::alive, 1);
}

}  // namespace
}  // namespace Vanto
