/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The transport layer's parameters of a device, its stream-grabber channel, and removal
 */

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>
#include <vector>

#include "DeviceFixture.h"
#include "vanto/DeviceRemovalCallback.h"

namespace clser_test {

using GenICam::LogicalErrorException;
using Vanto::MakeDeviceRemovalCallback;
using namespace Vanto::tracelog;

class DeviceNodeMaps : public DeviceTest {
protected:
    DeviceNodeMaps() {
        m_device = CreateDevice();
        m_device->Open();
    }
    ~DeviceNodeMaps() override {
        scripted::Driver().onRead = nullptr;
        scripted::Driver().onWrite = nullptr;
        if (m_device != nullptr)
            m_tl->DestroyDevice(m_device);
    }

    void FailOnce() {
        scripted::Driver().onRead = [](auto...) { return -10004; };
        EXPECT_THROW(Integer(m_device, "Width")->GetValue(false, true), GenICam::GenericException);
        scripted::Driver().onRead = nullptr;
    }

    GenApi::CIntegerPtr Parameter(const char* name) { return m_device->GetTLNodeMap()->GetNode(name); }

    Vanto::IVantoDevice* CreateOther() {
        scripted::Serial().SetCamera(1, "Marlow#Heron#H2048#2");
        return m_tl->CreateDevice(
            Vanto::CVantoCLSerTlDeviceInfoImpl("Scripted#Port1", scripted::FullDeviceId("Marlow#Heron#H2048#2")));
    }

    /// Whether the port stays open for longer than another one that closes itself after a time that begins now.
    bool OutlastsAPortWithTimeout(std::int64_t milliseconds) {
        m_log.Clear();
        Integer(m_device, "Width")->GetValue(false, true);
        Vanto::IVantoDevice* const other = CreateOther();
        other->Open();
        const GenApi::CIntegerPtr timeout = other->GetTLNodeMap()->GetNode("AutoCloseTimeout");
        timeout->SetValue(milliseconds);
        EXPECT_TRUE(
            m_log.WaitForText("AutoClosing CLPort 'Scripted#Port1' due to inactivity.", std::chrono::seconds(60)));
        m_tl->DestroyDevice(other);
        return Logged(kDebug, "AutoClosing CLPort 'Scripted#Port0' due to inactivity.") == 0;
    }

    Vanto::IVantoDevice* m_device = nullptr;
};

TEST_F(DeviceNodeMaps, HasTheAutoCloseTimeoutParameter) {
    const GenApi::CIntegerPtr timeout = Parameter("AutoCloseTimeout");
    ASSERT_TRUE(timeout.IsValid());
    EXPECT_EQ(timeout->GetValue(), 0);
    EXPECT_EQ(timeout->GetMin(), 0);
    EXPECT_EQ(timeout->GetMax(), 86400);
    EXPECT_EQ(timeout->GetRepresentation(), GenApi::Linear);
    EXPECT_EQ(timeout->GetNode()->GetDisplayName(), "Auto Close Timeout");
    EXPECT_EQ(m_device->GetTLNodeMap(), m_device->GetTLNodeMap());
}

TEST_F(DeviceNodeMaps, ClosesThePortAfterInactivityAndOpensItAgain) {
    Parameter("AutoCloseTimeout")->SetValue(20);
    EXPECT_TRUE(m_log.WaitForText("AutoClosing CLPort 'Scripted#Port0' due to inactivity.", std::chrono::seconds(30)));
    while (scripted::Driver().CountConnections() != 0)
        std::this_thread::yield();
    EXPECT_EQ(Integer(m_device, "Width")->GetValue(false, true), 0);
    EXPECT_GE(Logged(kDebug, "Reopening CLPort 'Scripted#Port0'"), 1u);
}

TEST_F(DeviceNodeMaps, FollowsTheParameterOnlyUntilClose) {
    Parameter("AutoCloseTimeout")->SetValue(0);
    m_device->Close();
    m_device->Open();
    Parameter("AutoCloseTimeout")->SetValue(1);
    EXPECT_TRUE(OutlastsAPortWithTimeout(20));
}

TEST_F(DeviceNodeMaps, ForgetsTheTimeoutWhenItIsClosed) {
    Parameter("AutoCloseTimeout")->SetValue(500);
    m_device->Close();
    m_device->Open();
    EXPECT_TRUE(OutlastsAPortWithTimeout(600));
}

// Thread T is in a callback of the application, with the lock of the parameters' node map, and asks for that map.
TEST_F(DeviceNodeMaps, AreGivenOutInACallbackWhileTheDeviceIsClosed) {
    std::thread closer;
    const auto ask = [&](GenApi::INode*) {
        if (closer.joinable())
            return;
        closer = std::thread([this] { m_device->Close(); });
        EXPECT_TRUE(
            m_log.WaitForText("Restored old baud rate for device 'Marlow H2048 (1234)'.", std::chrono::seconds(60)));
        for (int count = 0; count < 100; ++count) {  // the other thread now waits for the lock that this one has
            EXPECT_NE(m_device->GetTLNodeMap(), nullptr);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    };
    GenApi::INode* const node = m_device->GetTLNodeMap()->GetNode("AutoCloseTimeout");
    GenApi::Register(node, ask, GenApi::cbPostInsideLock);
    Parameter("AutoCloseTimeout")->SetValue(0);
    closer.join();
    EXPECT_FALSE(m_device->IsOpen());
}

TEST_F(DeviceNodeMaps, CountsCallbackHandlesAcrossDevices) {
    const auto callback = MakeDeviceRemovalCallback([](Vanto::IVantoDevice*) {});
    const Vanto::DeviceCallbackHandle first = m_device->RegisterRemovalCallback(callback);
    const Vanto::DeviceCallbackHandle second = m_device->RegisterRemovalCallback(callback);
    EXPECT_GE(first, 1001u);
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(Logged(kDebug, "Registered removal callback with handle " + std::to_string(first)), 1u);

    Vanto::IVantoDevice* other = CreateOther();
    other->Open();
    EXPECT_EQ(other->RegisterRemovalCallback(callback), second + 1);
    m_tl->DestroyDevice(other);
}

TEST_F(DeviceNodeMaps, DeregistersOnlyKnownHandles) {
    int calls = 0;
    const auto handle =
        m_device->RegisterRemovalCallback(MakeDeviceRemovalCallback([&calls](Vanto::IVantoDevice*) { ++calls; }));
    EXPECT_FALSE(m_device->DeregisterRemovalCallback(handle + 1));
    EXPECT_TRUE(m_device->DeregisterRemovalCallback(handle));
    EXPECT_FALSE(m_device->DeregisterRemovalCallback(handle));
    EXPECT_EQ(Logged(kDebug, "Deregistering removal callback with handle " + std::to_string(handle)), 2u);
    FailOnce();
    EXPECT_EQ(calls, 0);
}

TEST_F(DeviceNodeMaps, RefusesRegistrationOnAClosedDevice) {
    m_device->Close();
    const auto callback = MakeDeviceRemovalCallback([](Vanto::IVantoDevice*) {});
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { m_device->RegisterRemovalCallback(callback); }),
              "Illegal Camera Status, camera not open");
    EXPECT_EQ(DescriptionOf<LogicalErrorException>([&] { m_device->DeregisterRemovalCallback(1001); }),
              "Illegal Camera Status, camera not open");
}

TEST_F(DeviceNodeMaps, FiresOnceForTwoFailures) {
    std::vector<Vanto::IVantoDevice*> called;
    Vanto::RegisterRemovalCallback(*m_device, [&called](Vanto::IVantoDevice* device) { called.push_back(device); });
    FailOnce();
    EXPECT_THROW(Integer(m_device, "Width")->GetValue(false, true), GenICam::GenericException);
    EXPECT_EQ(called, std::vector<Vanto::IVantoDevice*>{m_device});
    EXPECT_EQ(Logged(kDebug, "Removal detected. Calling registered removal callbacks."), 1u);
}

TEST_F(DeviceNodeMaps, RunsAllCallbacksInOrderWhateverOneThrows) {
    std::string order;
    Vanto::RegisterRemovalCallback(*m_device, [&order](Vanto::IVantoDevice*) {
        order += 'a';
        throw 5;
    });
    Vanto::RegisterRemovalCallback(*m_device, [&order](Vanto::IVantoDevice*) {
        order += 'b';
        throw std::runtime_error("x");
    });
    Vanto::RegisterRemovalCallback(*m_device, [&order](Vanto::IVantoDevice*) { order += 'c'; });
    FailOnce();
    EXPECT_EQ(order, "abc");
}

TEST_F(DeviceNodeMaps, LetsACallbackDeregisterItself) {
    int calls = 0;
    Vanto::DeviceCallbackHandle handle = 0;
    handle = Vanto::RegisterRemovalCallback(*m_device, [&](Vanto::IVantoDevice* device) {
        ++calls;
        EXPECT_TRUE(device->DeregisterRemovalCallback(handle));
    });
    FailOnce();
    EXPECT_EQ(calls, 1);
}

TEST_F(DeviceNodeMaps, LetsACallbackCloseTheDeviceAndOpenItLater) {
    int calls = 0;
    Vanto::RegisterRemovalCallback(*m_device, [&calls](Vanto::IVantoDevice* device) {
        ++calls;
        device->Close();
    });
    FailOnce();
    EXPECT_FALSE(m_device->IsOpen());
    m_device->Open();
    FailOnce();  // registrations survive closing, and opening arms them again
    EXPECT_EQ(calls, 2);
}

// What a read has found out comes so late that the device was closed and opened again meanwhile.
TEST_F(DeviceNodeMaps, LosesNothingByARemovalFromBeforeItWasOpened) {
    int calls = 0;
    Vanto::RegisterRemovalCallback(*m_device, [&calls](Vanto::IVantoDevice*) { ++calls; });
    {
        const LogSubscription late(
            [this](const LogMessage& message) {
                if (message.text.starts_with("Device removal for PortID")) {
                    scripted::Driver().onRead = nullptr;
                    m_device->Close();
                    m_device->Open();
                }
            },
            "Vanto.CLSer.Port:debug");
        FailOnce();
    }
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(Integer(m_device, "Width")->GetValue(false, true), 0);
    FailOnce();
    EXPECT_EQ(calls, 1);
}

// The port is one for all devices of its identifier, whoever destroys what.
TEST_F(DeviceNodeMaps, EndWithTheConnectionWhenAnotherDeviceOfThePortIsDestroyed) {
    m_device->Close();
    Vanto::IVantoDevice* const second = CreateDevice();
    second->Open();
    int calls = 0;
    Vanto::RegisterRemovalCallback(*second, [&calls](Vanto::IVantoDevice*) { ++calls; });
    m_tl->DestroyDevice(std::exchange(m_device, nullptr));
    EXPECT_EQ(scripted::Driver().CountConnections(), 0u);
    EXPECT_EQ(DescriptionOf<GenICam::RuntimeException>([&] { Integer(second, "Width")->GetValue(false, true); }),
              "Could not reopen CLPort 'Scripted#Port0'");
    EXPECT_EQ(calls, 1);
    m_tl->DestroyDevice(second);
}

TEST_F(DeviceNodeMaps, HasNoChannelWithoutDeviceSpecificString) {
    EXPECT_EQ(m_device->GetNumStreamGrabberChannels(), 0u);
    EXPECT_EQ(Logged(kInfo, "No DeviceSpecificString in device info."), 1u);
    EXPECT_EQ(m_device->GetNumStreamGrabberChannels(), 0u);
    EXPECT_EQ(Logged(kInfo, "No DeviceSpecificString in device info."), 1u) << "a failed creation is not tried again";
    EXPECT_EQ(m_device->GetStreamGrabber(0), nullptr);
    EXPECT_EQ(Logged(kWarning, "Invalid StreamIndex 0 passed. StreamIndex must be less GetNumStreamGrabberChannels()!"),
              1u);
}

TEST_F(DeviceNodeMaps, AnswersTheQuickCheckOfAProbe) {
    const std::size_t probes = scripted::Driver().CountCalls("clpProbeDevice");
    EXPECT_EQ(m_tl->GetOrCreatePort(kPortId).Probe(), DeviceId());
    EXPECT_EQ(scripted::Driver().CountCalls("clpProbeDevice"), probes);
}

TEST_F(DeviceNodeMaps, IsRemovedWhenAnotherCameraAnswersTheQuickCheck) {
    int calls = 0;
    Vanto::RegisterRemovalCallback(*m_device, [&calls](Vanto::IVantoDevice*) { ++calls; });
    scripted::Driver().SetRegister(kSerialNumberAddress, "9999");
    EXPECT_EQ(m_tl->GetOrCreatePort(kPortId).Probe(), "");
    EXPECT_EQ(calls, 1);
}

TEST_F(DeviceNodeMaps, BuildsNothingForChunks) {
    auto* const self = dynamic_cast<Vanto::IVantoDevicePrivate*>(m_device);
    EXPECT_FALSE(self->SupportsChunkParsing());
    self->CreateChunkNodeMapFromString("no description", {});
    EXPECT_FALSE(self->IsChunkParsingAvailable());
    EXPECT_EQ(self->CreateChunkNodeMapCopy(), nullptr);
    EXPECT_THROW(self->CreateChunkNodeMapFromFile("/there/is/none.xml", {}), GenICam::GenericException);
    const GenICam::gcstring_vector two{kInjected, kInjected};
    EXPECT_THROW(self->CreateChunkNodeMapFromString("", two), GenICam::RuntimeException);
    EXPECT_THROW(self->CreateChunkNodeMapFromFile("/there/is/none.xml", two), GenICam::RuntimeException);
}

TEST_F(DeviceNodeMaps, OffersNoCompanionObjects) {
    EXPECT_EQ(m_device->GetReserved(), nullptr);
    EXPECT_EQ(m_device->CreateChunkParser(), nullptr);
    EXPECT_EQ(m_device->CreateEventAdapter(), nullptr);
    EXPECT_EQ(m_device->CreateSelfReliantChunkParser(), nullptr);
    m_device->DestroyChunkParser(nullptr);
    m_device->DestroyEventAdapter(nullptr);
    m_device->DestroySelfReliantChunkParser(nullptr);
}

}  // namespace clser_test
