/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the load and unload hook
 */

#include "VantoCLSer/module/LoadHook.h"

#include <gtest/gtest.h>

namespace Vanto {
namespace {

class LoadHook : public testing::Test {
protected:
    ~LoadHook() override { OnLoadNotification(m_before, m_before != nullptr ? kProcessAttach : kProcessDetach); }

    int m_module = 0;
    void* const m_before = GetModuleHandleOfPlugin();
};

TEST_F(LoadHook, IsAttachedWhileTheCodeIsLoaded) {
    EXPECT_NE(GetModuleHandleOfPlugin(), nullptr);
}

TEST_F(LoadHook, StoresTheModuleOnAttach) {
    EXPECT_TRUE(OnLoadNotification(&m_module, 1));
    EXPECT_EQ(GetModuleHandleOfPlugin(), &m_module);
}

TEST_F(LoadHook, ForgetsTheModuleOnDetach) {
    OnLoadNotification(&m_module, 1);
    EXPECT_TRUE(OnLoadNotification(&m_module, 0));
    EXPECT_EQ(GetModuleHandleOfPlugin(), nullptr);
}

TEST_F(LoadHook, IgnoresThreads) {
    OnLoadNotification(&m_module, 1);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(OnLoadNotification(nullptr, 2));
    EXPECT_TRUE(OnLoadNotification(nullptr, 3));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(GetModuleHandleOfPlugin(), &m_module);
}

TEST_F(LoadHook, TellsTheDebuggerOfAnUnknownReason) {
    OnLoadNotification(&m_module, 1);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(OnLoadNotification(nullptr, 4));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "*** Invalid ul_reason_for_call!!! ***");
    EXPECT_EQ(GetModuleHandleOfPlugin(), &m_module);
}

}  // namespace
}  // namespace Vanto
