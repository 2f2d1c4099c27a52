/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A pseudo-terminal, for tests
 */

#include "Pty.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <stdexcept>

namespace ClSerTtyTest {

Pty::Pty() : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    char name[128] = {};
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0 ||
        ::ptsname_r(m_master, name, sizeof(name)) != 0) {
        throw std::runtime_error("no pseudo-terminal");
    }
    m_slavePath = name;
    m_slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
}

Pty::~Pty() {
    for (const int file : {m_slave, m_master}) {
        if (file >= 0)
            ::close(file);
    }
}

}  // namespace ClSerTtyTest
