/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A serial line without a camera
 */
#include "../SilentLine.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace tools_test {

SilentLine::SilentLine(const std::filesystem::path& link)
    : m_link(link), m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    std::array<char, 256> name{};
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0 ||
        ::ptsname_r(m_master, name.data(), name.size()) != 0)
        throw std::runtime_error("can't make a pseudo-terminal");
    std::filesystem::create_symlink(name.data(), m_link);
}

SilentLine::~SilentLine() {
    std::error_code ignored;
    std::filesystem::remove(m_link, ignored);
    if (m_held >= 0)
        ::close(m_held);
    ::close(m_master);
}

void SilentLine::Hold() {
    m_held = ::open(m_link.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_held < 0 || ::flock(m_held, LOCK_EX | LOCK_NB) != 0)
        throw std::runtime_error("can't hold the line");
}

}  // namespace tools_test
