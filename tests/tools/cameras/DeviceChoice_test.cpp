/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of which camera of the list a user means
 */
#include "cameras/DeviceChoice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error/ExitCode.h"

namespace {

using namespace tools;
using testing::HasSubstr;

Vanto::CDeviceInfo Camera(const char* serial, const char* friendly, const char* full, const char* port) {
    Vanto::CDeviceInfo camera;
    camera.SetSerialNumber(serial).SetFriendlyName(friendly).SetFullName(full);
    camera.SetPropertyValue("PortID", port);
    return camera;
}

Vanto::DeviceInfoList Cameras() {
    Vanto::DeviceInfoList list;
    list.push_back(Camera("S1", "Marlow H2048 (S1)", "P#0|driver#H2048#S1", "P#0"));
    list.push_back(Camera("0", "Marlow H4096 (0)", "P#1|driver#H4096#0", "P#1"));
    list.push_back(Camera("", "Marlow H4096", "P#2|driver#H4096#", "P#2"));
    list.push_back(Camera("", "Marlow H4096", "P#3|driver#H4096#", "P#3"));
    return list;
}

/// How a choice fails: exit code and hint.
std::pair<ExitCode, std::string> Failure(const std::string& device) {
    try {
        const Vanto::DeviceInfoList cameras = Cameras();
        ChooseDevice(cameras, device);
    } catch (const ToolError& error) {
        return {error.Code(), error.Hint()};
    }
    return {ExitCode::kDone, ""};
}

class ChoiceByName : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(ChoiceByName, FindsTheCamera) {
    const Vanto::DeviceInfoList cameras = Cameras();
    EXPECT_EQ(PropertyOf(ChooseDevice(cameras, GetParam().first), "PortID"), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(All, ChoiceByName,
                         testing::Values(std::pair("S1", "P#0"), std::pair("Marlow H2048 (S1)", "P#0"),
                                         std::pair("P#1|driver#H4096#0", "P#1"), std::pair("P#2", "P#2"),
                                         std::pair("1", "P#1"), std::pair("3", "P#3")));

TEST(DeviceChoice, RefusesANumberThatIsIndexAndSerialNumberOfTwoCameras) {
    const auto [code, hint] = Failure("0");
    EXPECT_EQ(code, ExitCode::kUsage);
    EXPECT_EQ(hint, "  0  Marlow H2048 (S1)  P#0|driver#H2048#S1\n  1  Marlow H4096 (0)  P#1|driver#H4096#0");
}

TEST(DeviceChoice, RefusesAFriendlyNameOfTwoCameras) {
    EXPECT_EQ(Failure("Marlow H4096").first, ExitCode::kUsage);
}

TEST(DeviceChoice, ListsTheCamerasForAnUnknownName) {
    const auto [code, hint] = Failure("S2");
    EXPECT_EQ(code, ExitCode::kNoDevice);
    EXPECT_THAT(hint, HasSubstr("3  Marlow H4096"));
}

class ChoiceOfNothing : public testing::TestWithParam<const char*> {};

TEST_P(ChoiceOfNothing, IsNoSuchDevice) {
    EXPECT_EQ(Failure(GetParam()).first, ExitCode::kNoDevice);
}

// An empty text must not match the cameras that have no serial number.
INSTANTIATE_TEST_SUITE_P(All, ChoiceOfNothing,
                         testing::Values("", "4", "-1", "+1", "1 ", "0x1", "99999999999999999999999", "s1"));

}  // namespace
