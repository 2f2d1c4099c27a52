/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The process's error mode, which loading a library changes for as long as it takes
 */

#include <windows.h>

#include <gtest/gtest.h>

#include <barrier>
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
    constexpr int kRounds = 1000;
    int wrong = 0;
    std::barrier round(2, [&]() noexcept { wrong += ::SetErrorMode(kMode) != kMode ? 1 : 0; });
    const auto load = [&round] {
        for (int count = 0; count < kRounds; ++count) {
            EXPECT_THROW(os::Library("none\\such.dll"), os::LibraryError);
            round.arrive_and_wait();
        }
    };
    std::thread other(load);
    load();
    other.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace
