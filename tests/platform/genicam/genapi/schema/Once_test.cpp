/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what is made when it is first asked for
 */

#include "schema/Once.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

namespace GenApi {
namespace {

TEST(Once, MakesOnceForManyThreads) {
    Once once;
    int made = 0;  // guarded by what is tested
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&] {
                once.Do([&] { ++made; });
                EXPECT_EQ(made, 1);
            });
        }
    }
    EXPECT_EQ(made, 1);
}

TEST(Once, MakesAgainWhatCouldNotBeMade) {
    Once once;
    int made = 0;
    EXPECT_THROW(once.Do([] { throw std::runtime_error("no memory"); }), std::runtime_error);
    once.Do([&] { ++made; });
    once.Do([&] { ++made; });
    EXPECT_EQ(made, 1);
}

}  // namespace
}  // namespace GenApi
