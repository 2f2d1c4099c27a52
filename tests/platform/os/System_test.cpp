/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the tick count and debugger output
 */

#include "os/System.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

TEST(System, TicksInMilliseconds) {
    const std::uint32_t start = os::TickCount();
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(60);
    std::this_thread::sleep_until(end);
    EXPECT_GE(os::TickCount() - start, 50u);
}

TEST(System, HasNoUnknownSettings) {
    EXPECT_FALSE(os::MachineSetting("software\\none\\such", "NoneSuch"));
    EXPECT_FALSE(os::MachineSetting("software", ""));
}

#ifndef _WIN32
TEST(System, ShowsTheDebuggerATextAsItIs) {
    testing::internal::CaptureStderr();
    os::WriteToDebugger("100 %s\n");
    os::WriteToDebugger(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "100 %s\n");
}
#endif

}  // namespace
