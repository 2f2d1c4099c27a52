/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Serial lines and the loaded serial library, for tests
 */
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "clser/ClSerial.h"
#include "line/Line.h"
#include "os/Library.h"

namespace ClSerTtyTest {

/// The camera's end of a serial line, whose other end a link names.
class SerialEnd {
public:
    explicit SerialEnd(const std::filesystem::path& link)
        : m_line(MarlowSim::Line::Create(link)), m_waiter(MarlowSim::LineWaiter::Create()) {}

    void Send(const std::string& bytes) const;
    /// So many bytes, or what has come within ten seconds.
    std::string Receive(std::size_t count) const;
    bool IsRead() const { return m_line->IsRead(); }
    std::uint32_t BitsPerSecond() const { return m_line->HostBitsPerSecond(); }
    void Unplug() { m_line.reset(); }

private:
    std::unique_ptr<MarlowSim::Line> m_line;
    std::unique_ptr<MarlowSim::LineWaiter> m_waiter;
};

/// The functions as a host gets them.
class SerialLibrary {
public:
    SerialLibrary();

    PclGetManufacturerInfo GetManufacturerInfo;
    PclGetNumSerialPorts GetNumSerialPorts;
    PclGetSerialPortIdentifier GetSerialPortIdentifier;
    PclSerialInit SerialInit;
    PclSerialClose SerialClose;
    PclSerialRead SerialRead;
    PclSerialWrite SerialWrite;
    PclGetNumBytesAvail GetNumBytesAvail;
    PclFlushPort FlushPort;
    PclGetSupportedBaudRates GetSupportedBaudRates;
    PclSetBaudRate SetBaudRate;
    PclGetErrorText GetErrorText;
    std::int32_t (*SetParity)(hSerRef ref, std::uint32_t parity);  ///< of no standard

    std::string TextOf(std::int32_t code) const;
    /// The index of a port's name, after a new look for ports.
    std::uint32_t IndexOf(const std::string& name) const;

private:
    template <typename Function>
    void Find(Function& function, const char* name);

    os::Library m_library;
};

}  // namespace ClSerTtyTest
