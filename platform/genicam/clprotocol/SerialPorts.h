/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The serial ports of the machine
 */
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "CLProtocol/Diagnostics.h"
#include "LibraryShelf.h"
#include "SerialLibrary.h"
#include "os/LockName.h"

namespace CLProtocol {

/// A port of a serial library.
struct SerialPort {
    std::string id;  ///< PortID: "Maker#PortName", unique among all ports of an enumeration
    std::shared_ptr<const SerialLibrary> library;
    std::uint32_t index = 0;
    std::string name;  ///< the library's own name for it
};

class SerialPorts {
public:
    static SerialPorts& GetInstance();

    static std::vector<std::string> Folders();
    std::vector<SerialPort> Enumerate();
    SerialPort Find(const std::string& portId);
    std::vector<LibraryReport> Report();
    void Release();

private:
    struct Scan;
    Scan ScanLibrary(const std::string& path);

    LibraryShelf<SerialLibrary> m_libraries;
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "serial ports"};
    std::vector<SerialPort> m_ports;  // of the last enumeration
};

}  // namespace CLProtocol
