/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The process's error mode, which loading a library changes for as long as it takes
 */

#include <windows.h>

#include <gtest/gtest.h>

#include <thread>

#include "os/Library.h"

namespace {

class ErrorMode : public testing::Test {
protected:
    static constexpr UINT kMode = SEM_NOGPFAULTERRORBOX;

    ~ErrorMode() override { ::SetErrorMode(m_previous); }

    const UINT m_previous = ::SetErrorMode(kMode);
};

TEST_F(ErrorMode, IsThatOfBeforeAfterLoading) {
    const os::Library library(OS_TEST_LIBRARY);
    EXPECT_EQ(::GetErrorMode(), kMode);
}

TEST_F(ErrorMode, IsThatOfBeforeAfterAFailure) {
    EXPECT_THROW(os::Library("none\\such.dll"), os::LibraryError);
    EXPECT_EQ(::GetErrorMode(), kMode);
}

TEST_F(ErrorMode, IsThatOfBeforeAfterLoadingsThatOverlap) {
    constexpr int kRounds = 200;
    int wrong = 0;
    const auto load = [] { EXPECT_THROW(os::Library("none\\such.dll"), os::LibraryError); };
    for (int round = 0; round < kRounds; ++round) {
        std::thread first(load);
        std::thread second(load);
        first.join();
        second.join();
        wrong += ::SetErrorMode(kMode) != kMode ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0);
}

}  // namespace
