/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Pseudo-terminals, folders of links and the loaded serial library, for tests
 */
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "clser/ClSerial.h"
#include "os/Library.h"

namespace ClSerTtyTest {

/// A folder of its own for each test, gone afterwards.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// Both sides of a pseudo-terminal; the slave is held open so that settings outlive its users.
class Pty {
public:
    Pty();
    ~Pty();
    Pty(const Pty&) = delete;
    const std::string& SlavePath() const { return m_slavePath; }
    void Send(const std::string& bytes) const;
    std::string Receive(std::size_t count) const;
    unsigned SpeedCode() const;
    void Unplug();

private:
    int m_master = -1;
    int m_slave = -1;
    std::string m_slavePath;
};

/// The twelve functions as a host gets them.
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

    std::string TextOf(std::int32_t code) const;
    /// The index of a port's name, after a new look for ports.
    std::uint32_t IndexOf(const std::string& name) const;

private:
    template <typename Function>
    void Find(Function& function, const char* name);

    os::Library m_library;
};

}  // namespace ClSerTtyTest
