/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Too few addresses
 */
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>

namespace test_support {

/// Leaves the process so many bytes of addresses beside those in use, as long as it lives.
class AddressLimit {
public:
    explicit AddressLimit(std::uint64_t left) {
        std::uint64_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        ::getrlimit(RLIMIT_AS, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)) + left;
        EXPECT_EQ(::setrlimit(RLIMIT_AS, &limit), 0);
    }
    ~AddressLimit() { ::setrlimit(RLIMIT_AS, &m_before); }
    AddressLimit(const AddressLimit&) = delete;
    AddressLimit& operator=(const AddressLimit&) = delete;

private:
    rlimit m_before{};
};

}  // namespace test_support
