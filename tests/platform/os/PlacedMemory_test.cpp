/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of memory at given addresses
 */

#include "os/PlacedMemory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

TEST(PlacedMemory, HasTheLowerHalfOfItsAddress) {
    for (const std::uint32_t half : {0u, 1u, 0xfffu, 0x1000u, 0x7fffffffu, 0x80000000u, 0xffffd8ecu, 0xffffffffu}) {
        const os::PlacedMemory memory(half, 70000);
        EXPECT_EQ(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(memory.Data())), half);
        EXPECT_EQ(std::count(memory.Data(), memory.Data() + 70000, '\0'), 70000);
        std::memset(memory.Data(), 'x', 70000);
        EXPECT_EQ(memory.Data()[69999], 'x');
    }
}

TEST(PlacedMemory, IsThereMoreThanOnce) {
    const os::PlacedMemory first(0xffffd8ec, 100);
    const os::PlacedMemory second(0xffffd8ec, 100);
    EXPECT_NE(first.Data(), second.Data());
}

}  // namespace
