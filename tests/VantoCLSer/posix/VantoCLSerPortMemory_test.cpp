/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of accesses for which there is no memory
 */

#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <new>

#include "tests/VantoCLSer/PortFixture.h"

// The sanitizers need address space of their own, and end the process where there is none.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace Vanto {
namespace {

using namespace clser_test;

constexpr char kStdError[] = "Could not %s from CLSer port '%s'. std-Error: '%s'";

// Little more address space than is in use, as long as it lives.
class ShortageOfMemory {
public:
    ShortageOfMemory() {
        std::uint64_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        ::getrlimit(RLIMIT_AS, &m_before);
        rlimit now = m_before;
        now.rlim_cur = pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)) + (std::uint64_t{8} << 20);
        ::setrlimit(RLIMIT_AS, &now);
    }
    ~ShortageOfMemory() { ::setrlimit(RLIMIT_AS, &m_before); }
    ShortageOfMemory(const ShortageOfMemory&) = delete;
    ShortageOfMemory& operator=(const ShortageOfMemory&) = delete;

private:
    rlimit m_before{};
};

class PortMemory : public PortTest {
protected:
    // The longest access: no room that the allocator keeps for itself is as large.
    static constexpr std::int64_t kLarge = 64 << 20;

    PortMemory() { ConnectPort(); }

    const std::unique_ptr<char[]> m_buffer = std::make_unique<char[]>(kLarge);
};

TEST_F(PortMemory, LogsAReadThatHasNone) {
    {
        const ShortageOfMemory shortage;
        EXPECT_THROW(m_port.Read(m_buffer.get(), 0, kLarge), std::bad_alloc);
    }
    EXPECT_EQ(m_log.CountFormat(kStdError, kError), 1u);
    EXPECT_EQ(m_log.CountText("Could not read from CLSer port 'Scripted#Port0'. std-Error: 'std::bad_alloc'"), 1u);
    EXPECT_NO_THROW(ReadByte());
}

TEST_F(PortMemory, LogsAWriteThatHasNone) {
    {
        const ShortageOfMemory shortage;
        EXPECT_THROW(m_port.Write(m_buffer.get(), 0, kLarge), std::bad_alloc);
    }
    EXPECT_EQ(m_log.CountText("Could not write from CLSer port 'Scripted#Port0'. std-Error: 'std::bad_alloc'"), 1u);
    EXPECT_NO_THROW(ReadByte());
}

}  // namespace
}  // namespace Vanto

#endif
