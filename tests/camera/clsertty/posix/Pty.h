/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A pseudo-terminal, for tests
 */
#pragma once

#include <string>

namespace ClSerTtyTest {

/// Both sides of a pseudo-terminal; the slave is held open so that settings outlive its users.
class Pty {
public:
    Pty();
    ~Pty();
    Pty(const Pty&) = delete;
    const std::string& SlavePath() const { return m_slavePath; }
    int Slave() const { return m_slave; }
    int Master() const { return m_master; }

private:
    int m_master = -1;
    int m_slave = -1;
    std::string m_slavePath;
};

}  // namespace ClSerTtyTest
