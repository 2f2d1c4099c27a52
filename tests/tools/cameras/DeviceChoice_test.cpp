/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of which camera a user means
 */
#include "cameras/DeviceChoice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error/ExitCode.h"

namespace {

using namespace tools;
using testing::HasSubstr;

KnownCamera Camera(std::size_t number, const std::string& port, const std::string& names) {
    return {number, {port, "/drivers#Driver#Marlow#Heron#" + names}, "", 0};
}

std::vector<KnownCamera> Cameras() {
    return {Camera(0, "P#0", "H2048#S1"), Camera(1, "P#1", "H4096#0"), Camera(2, "P#2", "H4096#"),
            Camera(5, "P#3", "H4096#")};
}

/// How a choice fails: exit code and hint.
std::pair<ExitCode, std::string> Failure(const std::string& device) {
    try {
        ChooseDevice(Cameras(), device);
    } catch (const ToolError& error) {
        return {error.Code(), error.Hint()};
    }
    return {ExitCode::kDone, ""};
}

class ChoiceByName : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(ChoiceByName, FindsTheCamera) {
    const std::optional<KnownCamera> camera = ChooseDevice(Cameras(), GetParam().first);
    ASSERT_TRUE(camera);
    EXPECT_EQ(camera->address.portId, GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(All, ChoiceByName,
                         testing::Values(std::pair("S1", "P#0"), std::pair("Marlow H2048 (S1)", "P#0"),
                                         std::pair("P#1|/drivers#Driver#Marlow#Heron#H4096#0", "P#1"),
                                         std::pair("P#2", "P#2"), std::pair("1", "P#1"), std::pair("5", "P#3")));

TEST(DeviceChoice, RefusesANumberThatIsThatOfOneCameraAndTheSerialNumberOfAnother) {
    const auto [code, hint] = Failure("0");
    EXPECT_EQ(code, ExitCode::kUsage);
    EXPECT_EQ(hint,
              "  0  Marlow H2048 (S1)  P#0\n"
              "  1  Marlow H4096 (0)  P#1");
}

TEST(DeviceChoice, RefusesAFriendlyNameOfTwoCameras) {
    EXPECT_EQ(Failure("Marlow H4096").first, ExitCode::kUsage);
}

class ChoiceOfNothing : public testing::TestWithParam<const char*> {};

TEST_P(ChoiceOfNothing, IsNoCamera) {
    EXPECT_FALSE(ChooseDevice(Cameras(), GetParam()));
}

// An empty text must not match the cameras that have no serial number.
INSTANTIATE_TEST_SUITE_P(All, ChoiceOfNothing,
                         testing::Values("", "3", "-1", "+1", "1 ", "0x1", "99999999999999999999999", "s1"));

}  // namespace
