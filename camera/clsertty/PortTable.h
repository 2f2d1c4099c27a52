/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The references that the library has handed out, so that none is ever trusted as a pointer
 */
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "SerialPort.h"
#include "os/LockName.h"

namespace ClSerTty {

/// Thread-safe.
class PortTable {
public:
    void* Add(std::shared_ptr<SerialPort> port);
    std::shared_ptr<SerialPort> Get(void* reference) const;
    std::shared_ptr<SerialPort> Remove(void* reference);

private:
    mutable std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "open ports"};
    std::uintptr_t m_last = 0;
    std::map<std::uintptr_t, std::shared_ptr<SerialPort>> m_ports;
};

}  // namespace ClSerTty
