/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of environment variables
 */

#include "os/Environment.h"

#include <gtest/gtest.h>

namespace {

using os::EnvironmentStatus;

constexpr char kName[] = "VANTO_OS_ENVIRONMENT_TEST";

struct Environment : testing::Test {
    ~Environment() override { os::UnsetEnvironment(kName); }
};

TEST_F(Environment, TellsAbsentFromEmpty) {
    EXPECT_EQ(os::GetEnvironment(kName).status, EnvironmentStatus::kAbsent);
    ASSERT_TRUE(os::SetEnvironment(kName, ""));
    EXPECT_EQ(os::GetEnvironment(kName).status, EnvironmentStatus::kEmpty);
    ASSERT_TRUE(os::UnsetEnvironment(kName));
    EXPECT_EQ(os::GetEnvironment(kName).status, EnvironmentStatus::kAbsent);
}

TEST_F(Environment, YieldsTheValue) {
    ASSERT_TRUE(os::SetEnvironment(kName, "some value"));
    const os::EnvironmentValue value = os::GetEnvironment(kName);
    EXPECT_EQ(value.status, EnvironmentStatus::kPresent);
    EXPECT_EQ(value.text, "some value");
}

TEST_F(Environment, CountsTheNulOfALongValue) {
    ASSERT_TRUE(os::SetEnvironment(kName, std::string(259, 'x')));
    EXPECT_EQ(os::GetEnvironment(kName, 260).text.size(), 259u);
    ASSERT_TRUE(os::SetEnvironment(kName, std::string(260, 'x')));
    const os::EnvironmentValue value = os::GetEnvironment(kName, 260);
    EXPECT_EQ(value.status, EnvironmentStatus::kTooLong);
    EXPECT_EQ(value.text, "");
}

TEST_F(Environment, RefusesImpossibleNames) {
    EXPECT_FALSE(os::SetEnvironment("A=B", "x"));
    EXPECT_FALSE(os::SetEnvironment(nullptr, "x"));
    EXPECT_FALSE(os::UnsetEnvironment(nullptr));
    EXPECT_EQ(os::GetEnvironment(nullptr).status, EnvironmentStatus::kAbsent);
}

}  // namespace
