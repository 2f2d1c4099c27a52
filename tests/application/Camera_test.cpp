/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of Camera: found, opened, closed, gone
 */

#include "vanto/Camera.h"

#include <optional>
#include <thread>

#include "simulator/CameraRegisters.h"
#include "tests/application/ApplicationTest.h"
#include "vanto/Device.h"

namespace {

using application::ApplicationTest;
using application::Camera;
using application::HasSubstr;
using application::Thrown;

class Cameras : public ApplicationTest {};

TEST_F(Cameras, AreListedWithTheirProperties) {
    Add("cam1", Camera("22", "H4096"));
    const auto records = Vanto::Camera::List();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[1].name, "Marlow H4096 (22)");
    EXPECT_EQ(records[1].serialNumber, "22");
    EXPECT_EQ(records[1].port, "COM_Port#cam1");
    EXPECT_EQ(records[1].vendor, "Marlow");
    EXPECT_EQ(records[1].model, "H4096");
    EXPECT_THAT(records[1].properties, testing::Contains(testing::Pair("DeviceClass", "MarlowCameraLink")));
}

TEST_F(Cameras, AreNoneWhereNoneAnswers) {
    simulator.Unplug("cam0");
    EXPECT_TRUE(Vanto::Camera::List().empty());
    EXPECT_THAT(Thrown<Vanto::NoCamera>([] { const Vanto::Camera camera; }).what(), HasSubstr("There is no camera"));
}

TEST_F(Cameras, OpenWithoutANameWhenThereIsOne) {
    const Vanto::Camera camera;
    EXPECT_EQ(camera.Name(), "Marlow H2048 (21)");
    EXPECT_TRUE(camera.IsOpen());
    EXPECT_FALSE(camera.IsGone());
}

TEST_F(Cameras, WantANameWhenThereAreSeveral) {
    Add("cam1", Camera("22"));
    const auto error = Thrown<Vanto::NoCamera>([] { const Vanto::Camera camera; });
    EXPECT_THAT(error.what(), HasSubstr("Marlow H2048 (21) on COM_Port#cam0, Marlow H2048 (22) on COM_Port#cam1"));
}

TEST_F(Cameras, OpenByAnyOfTheirNames) {
    Add("cam1", Camera("22"));
    const std::string fullName = Vanto::Camera::List().at(1).fullName;
    for (const std::string& name : {std::string("22"), std::string("Marlow H2048 (22)"), std::string("COM_Port#cam1"),
                                    std::string("cam1"), fullName})
        EXPECT_EQ(Vanto::Camera(name).Record().serialNumber, "22") << name;
}

TEST_F(Cameras, SayWhichThereAreWhenNoneIsCalledSo) {
    const auto error = Thrown<Vanto::NoCamera>([] { const Vanto::Camera camera("23"); });
    EXPECT_STREQ(error.what(), "There is no camera '23'. There are: Marlow H2048 (21) on COM_Port#cam0.");
    EXPECT_EQ(error.CameraName(), "");
}

TEST_F(Cameras, OpenByAPartialRecord) {
    Add("cam1", Camera("22"));
    EXPECT_EQ(Vanto::Camera(Partial("22")).Name(), "Marlow H2048 (22)");
    EXPECT_THROW(Vanto::Camera(Partial("23")), Vanto::NoCamera);
}

TEST_F(Cameras, GiveTheirBaudRateBackAtTheEnd) {
    std::optional<Vanto::Camera> camera(std::in_place);
    EXPECT_NE(simulator.BitsPerSecond("cam0"), 9600u);
    camera.reset();
    EXPECT_EQ(simulator.BitsPerSecond("cam0"), 9600u);
}

TEST_F(Cameras, OpenAgainWhileAFeatureOfTheClosedOneIsHeld) {
    std::optional<Vanto::Camera> camera(std::in_place);
    const Vanto::Feature width = (*camera)["Width"];
    camera.reset();
    const Vanto::Camera again;
    EXPECT_EQ(again.Get<int>("Width"), 2048);
    EXPECT_THAT(Thrown<Vanto::CameraClosed>([&] { width.Get<int>(); }).what(), HasSubstr("was closed"));
}

TEST_F(Cameras, StayOpenWhenAnEarlierOneOfThemIsDestroyed) {
    std::optional<Vanto::Camera> before{std::in_place};
    before->Close();
    const Vanto::Camera camera;
    before.reset();
    EXPECT_EQ(camera.Get<int>("Width"), 2048);
}

TEST_F(Cameras, CloseOnce) {
    Vanto::Camera camera;
    camera.Close();
    camera.Close();
    EXPECT_FALSE(camera.IsOpen());
    EXPECT_THROW(camera["Width"], Vanto::CameraClosed);
    EXPECT_THROW(camera.Stream(), Vanto::CameraClosed);
    EXPECT_THROW(camera.ReadRegisters(0, 4), Vanto::CameraClosed);
}

TEST_F(Cameras, MoveTheirDeviceAlong) {
    Vanto::Camera camera;
    Vanto::Camera other(std::move(camera));
    EXPECT_EQ(other.Get<int>("Width"), 2048);
    other.Close();
    camera = Vanto::Camera();
    EXPECT_EQ(camera.Get<int>("Width"), 2048);
}

TEST_F(Cameras, TellOfTheirRemoval) {
    const Vanto::Camera camera;
    int calls = 0;
    const auto subscription = camera.OnRemoval([&] { ++calls; });
    simulator.Unplug("cam0");
    EXPECT_THAT(Thrown<Vanto::CameraGone>([&] { camera.ReadRegisters(0, 4); }).what(), HasSubstr("is gone"));
    EXPECT_TRUE(camera.IsGone());
    EXPECT_EQ(calls, 1);
    EXPECT_THROW(camera.Get<int>("Width"), Vanto::CameraGone);
    camera.OnRemoval([&] { ++calls; });
    EXPECT_EQ(calls, 2);
}

TEST_F(Cameras, AreGoneWhereTheyGoWhileTheyAreOpened) {
    for (int packets = 1; packets < 30; ++packets) {
        simulator.SetFault("cam0", "drop-after", std::to_string(packets));
        const auto use = [] {
            const Vanto::Camera camera;
            for (int access = 0; access < 30; ++access)
                camera.ReadRegisters(0, 4);
        };
        try {
            use();
            FAIL() << packets;
        } catch (const Vanto::FeatureError& error) {
            FAIL() << packets << ": " << error.what();
        } catch (const Vanto::CameraError& error) {
            EXPECT_THAT(error.what(), Not(HasSubstr("already removed"))) << packets;
        }
        simulator.Plug("cam0");
    }
}

TEST_F(Cameras, CloseInTheirRemovalCallback) {
    Vanto::Camera camera;
    const auto subscription = camera.OnRemoval([&] { camera.Close(); });
    simulator.Unplug("cam0");
    EXPECT_THROW(camera.ReadRegisters(0, 4), Vanto::CameraError);
    EXPECT_FALSE(camera.IsOpen());
}

TEST_F(Cameras, GoWhereTheirRemovalCallbackLetsGoOfThem) {
    auto camera = std::make_shared<Vanto::Camera>();
    const Vanto::FeatureMap features = camera->Features();
    auto subscription = camera->OnRemoval([&] { camera.reset(); });
    simulator.Unplug("cam0");
    EXPECT_THROW(features["DeviceTemperature"].Value(), Vanto::CameraError);
    EXPECT_EQ(camera, nullptr);
}

TEST_F(Cameras, TellNothingWhenTheSubscriptionEnded) {
    const Vanto::Camera camera;
    int calls = 0;
    camera.OnRemoval([&] { ++calls; }).Cancel();
    simulator.Unplug("cam0");
    EXPECT_THROW(camera.ReadRegisters(0, 4), Vanto::CameraGone);
    EXPECT_EQ(calls, 0);
}

TEST_F(Cameras, HaveRegisters) {
    const Vanto::Camera camera;
    const auto& exposure = MarlowSim::registers::kExposureTime;
    camera.WriteRegisters(static_cast<std::int64_t>(exposure.address), {0, 0, 0x61, 0xA8});  // 25000 tenths
    EXPECT_EQ(camera.ReadRegisters(static_cast<std::int64_t>(exposure.address), 4),
              (Vanto::FeatureBytes{0, 0, 0x61, 0xA8}));
    camera.Features().Refresh();
    EXPECT_DOUBLE_EQ(camera.Get<double>("ExposureTime"), 2500.0);
}

TEST_F(Cameras, LetTheirDeviceBeReached) {
    const Vanto::Camera camera;
    EXPECT_TRUE(camera.Device().IsOpen());
    EXPECT_EQ(&camera.Features().Nodes(), camera.Device().GetNodeMap());
}

TEST_F(Cameras, HaveFeaturesOfTransportLayerAndStream) {
    const Vanto::Camera camera;
    camera.TransportFeatures()["AutoCloseTimeout"] = 500;
    EXPECT_EQ(camera.TransportFeatures()["AutoCloseTimeout"].Get<int>(), 500);
    EXPECT_EQ(camera.StreamFeatures()["PayloadSize"].Get<int>(), 2048 * 2048);
}

TEST_F(Cameras, CloseWhileOtherThreadsUseThem) {
    for (int round = 0; round < 5; ++round) {
        Vanto::Camera camera;
        const Vanto::Feature temperature = camera["DeviceTemperature"];
        std::atomic<bool> read{false};
        std::thread reader([&] {
            EXPECT_THROW(
                for (;;) {
                    temperature.Refresh();
                    temperature.Value();
                    read = true;
                },
                Vanto::CameraError);
        });
        while (!read)
            std::this_thread::yield();
        camera.Close();
        reader.join();
    }
}

}  // namespace
