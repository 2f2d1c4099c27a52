/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Memory at given addresses in a process that has few addresses left
 */

#include "os/PlacedMemory.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <new>

namespace {

constexpr std::size_t kGiB = std::size_t{1} << 30;

/// Leaves the process so many bytes of addresses beside those in use.
class AddressLimit {
public:
    explicit AddressLimit(std::size_t left) {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        ::getrlimit(RLIMIT_AS, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) + left;
        EXPECT_EQ(::setrlimit(RLIMIT_AS, &limit), 0);
    }
    ~AddressLimit() { ::setrlimit(RLIMIT_AS, &m_before); }

private:
    rlimit m_before{};
};

TEST(PlacedMemory, GoesWithItsObject) {
    const AddressLimit limit(6 * kGiB);
    for (int round = 0; round < 20; ++round)
        EXPECT_NO_THROW(os::PlacedMemory(0xffffd8ec, kGiB));
}

TEST(PlacedMemory, IsRefusedWithoutRoom) {
    const AddressLimit limit(2 * kGiB);
    EXPECT_THROW(os::PlacedMemory(0xffffd8ec, 100), std::bad_alloc);
}

}  // namespace
