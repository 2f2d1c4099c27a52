/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of environment variables
 */

#include "os/Environment.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

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

// A variable that goes moves all behind it: who reads at that moment without a lock may miss one that is there.
TEST_F(Environment, IsWholeForThoseWhoReadWhileOthersChangeIt) {
    const auto before = [](int number) { return kName + std::to_string(number); };
    constexpr int kOthers = 300;
    std::atomic<int> missed{0};
    for (int round = 0; round < 50; ++round) {
        for (int number = 0; number < kOthers; ++number)
            os::SetEnvironment(before(number).c_str(), "x");
        os::SetEnvironment(kName, "there");
        std::atomic<bool> isReading{false};
        std::atomic<bool> isDone{false};
        std::thread reader([&] {
            for (; !isDone; isReading = true)
                missed += os::GetEnvironment(kName).status == EnvironmentStatus::kPresent ? 0 : 1;
        });
        while (!isReading)
            std::this_thread::yield();
        for (int number = 0; number < kOthers; ++number)
            os::UnsetEnvironment(before(number).c_str());
        isDone = true;
        reader.join();
        os::UnsetEnvironment(kName);
    }
    EXPECT_EQ(missed, 0);
}

}  // namespace
