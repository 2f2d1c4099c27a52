/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Memory at given addresses in a process that has few addresses left
 */

#include "os/PlacedMemory.h"

#include <gtest/gtest.h>

#include <list>
#include <new>

#include "../../../support/posix/AddressLimit.h"

namespace {

constexpr std::size_t kGiB = std::size_t{1} << 30;

using test_support::AddressLimit;

TEST(PlacedMemory, GoesWithItsObject) {
    const AddressLimit limit(6 * kGiB);
    for (int round = 0; round < 20; ++round)
        EXPECT_NO_THROW(os::PlacedMemory(0xffffd8ec, kGiB));
}

TEST(PlacedMemory, GivesBackWhatLiesAround) {
    const AddressLimit limit(6 * kGiB);
    std::list<os::PlacedMemory> memories;
    for (const std::uint32_t half : {0u, 0x40000000u, 0x80000000u, 0xC0000000u})
        EXPECT_NO_THROW(memories.emplace_back(half, 100)) << half;
}

TEST(PlacedMemory, IsRefusedWithoutRoom) {
    const AddressLimit limit(2 * kGiB);
    EXPECT_THROW(os::PlacedMemory(0xffffd8ec, 100), std::bad_alloc);
}

}  // namespace
