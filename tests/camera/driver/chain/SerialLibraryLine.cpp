/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SerialLibraryLine: a port of a loaded Camera Link serial library, as a host hands it to a driver
 */

#include "SerialLibraryLine.h"

#include <array>
#include <cstdint>
#include <stdexcept>
#include <type_traits>

namespace marlow::test {

namespace {

template <typename Pointer>
Pointer Find(const os::Library& library, const char* name) {
    return library.Get<std::remove_pointer_t<Pointer>>(name);
}

}  // namespace

/// \throw std::runtime_error There is no such port, or it can't be opened
SerialLibraryLine::SerialLibraryLine(const os::Library& library, const std::string& portName) : m_library(library) {
    std::uint32_t count = 0;
    Find<PclGetNumSerialPorts>(library, "clGetNumSerialPorts")(&count);
    for (std::uint32_t i = 0; i < count; ++i) {
        std::array<char, 256> name{};
        std::uint32_t size = name.size();
        Find<PclGetSerialPortIdentifier>(library, "clGetSerialPortIdentifier")(i, name.data(), &size);
        if (portName != name.data())
            continue;
        if (Find<PclSerialInit>(library, "clSerialInit")(i, &m_port) != CL_ERR_NO_ERR)
            throw std::runtime_error("can't open " + portName);
        return;
    }
    throw std::runtime_error("no port " + portName);
}

SerialLibraryLine::~SerialLibraryLine() {
    Find<PclSerialClose>(m_library, "clSerialClose")(m_port);
}

CLINT32 SerialLibraryLine::clSerialRead(CLINT8* buffer, CLUINT32* size, CLUINT32 timeoutMs) {
    const auto function = Find<PclSerialRead>(m_library, "clSerialRead");
    return function(m_port, buffer, size, timeoutMs);
}

CLINT32 SerialLibraryLine::clSerialWrite(CLINT8* buffer, CLUINT32* size, CLUINT32 timeoutMs) {
    const auto function = Find<PclSerialWrite>(m_library, "clSerialWrite");
    return function(m_port, buffer, size, timeoutMs);
}

CLINT32 SerialLibraryLine::clGetSupportedBaudRates(CLUINT32* mask) {
    return Find<PclGetSupportedBaudRates>(m_library, "clGetSupportedBaudRates")(m_port, mask);
}

CLINT32 SerialLibraryLine::clSetBaudRate(CLUINT32 flag) {
    return Find<PclSetBaudRate>(m_library, "clSetBaudRate")(m_port, flag);
}

}  // namespace marlow::test
