/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of a factory whose first look for transport layers meets a shortage of memory; each in a process of its own
 */

#include <gtest/gtest.h>

#include <cstdlib>

#include "../../TestSupport.h"
#include "failing/FailingAllocation.h"
#include "vanto/TlFactory.h"

namespace {

using Vanto::CTlFactory;

int CountTls() {
    Vanto::TlInfoList list;
    return CTlFactory::GetInstance().EnumerateTls(list);
}

// The memory ends at an allocation of the first look; the next one has enough again.
[[noreturn]] void LookTwice(std::size_t index, failing::Shortage duration) {
    os::SetEnvironment("VANTO_ROOT", Native(TEST_ROOT));
    try {
        const failing::FailingAllocation shortage(index, duration);
        CountTls();
    } catch (const std::exception&) {  // one of any kind
    }
    std::_Exit(CountTls());
}

class ShortFactory : public testing::TestWithParam<failing::Shortage> {};

TEST_P(ShortFactory, LooksAgainForTransportLayers) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (std::size_t index = 0; index < 3000; index += 1 + index / 8)
        EXPECT_EXIT(LookTwice(index, GetParam()), testing::ExitedWithCode(3), "") << index;
}

INSTANTIATE_TEST_SUITE_P(Once, ShortFactory, testing::Values(failing::Shortage::kOnce));
INSTANTIATE_TEST_SUITE_P(FromThenOn, ShortFactory, testing::Values(failing::Shortage::kFromThenOn));

}  // namespace
