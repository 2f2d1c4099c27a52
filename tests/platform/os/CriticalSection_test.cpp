/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of critical sections
 */

#include "os/CriticalSection.h"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>
#include <vector>

namespace {

TEST(CriticalSection, LetsOneThreadInAtATime) {
    os::CriticalSection section(200);
    int count = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&] {
            for (int turn = 0; turn < 10000; ++turn) {
                const std::lock_guard lock(section);
                ++count;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, 40000);
}

}  // namespace
