/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One loaded Camera Link serial library
 */
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "RefusedRates.h"
#include "clser/ClSerial.h"
#include "os/Library.h"

namespace CLProtocol {

class SerialLibrary {
public:
    explicit SerialLibrary(const std::string& path);
    SerialLibrary(const SerialLibrary&) = delete;
    SerialLibrary& operator=(const SerialLibrary&) = delete;

    const std::string& Path() const noexcept { return m_path; }
    std::string Maker() const;
    std::string Version() const;

    std::vector<std::string> PortNames() const;
    std::optional<std::string> PortName(std::uint32_t index) const;

    hSerRef Open(std::uint32_t index, const std::string& portId) const;
    void Close(hSerRef port) const;
    std::int32_t Read(hSerRef port, char* buffer, std::uint32_t* size, std::uint32_t timeoutMs) const;
    std::int32_t Write(hSerRef port, char* buffer, std::uint32_t* size, std::uint32_t timeoutMs) const;
    std::int32_t GetSupportedBaudRates(hSerRef port, std::uint32_t* mask) const;
    std::int32_t SetBaudRate(hSerRef port, std::uint32_t flag) const;
    void Flush(hSerRef port) const;
    std::string ErrorText(std::int32_t code) const;
    RefusedRates& Refused() const noexcept { return m_refused; }

private:
    void LookUp();
    void CheckVersion();
    std::string AskForMaker(std::uint32_t& version) const;
    std::uint32_t CountPortsByOpening() const;

    template <class Function, class... Arguments>
    auto Call(const char* name, Function function, Arguments... arguments) const;

    const std::string m_path;
    os::Library m_library;
    std::uint32_t m_version = CL_DLL_VERSION_1_0;
    std::string m_maker;  // when it was loaded
    std::uint32_t m_oldPorts = 0;
    mutable RefusedRates m_refused;

    PclSerialInit m_serialInit = nullptr;
    PclSerialClose m_serialClose = nullptr;
    PclSerialRead m_serialRead = nullptr;
    PclSerialWrite m_serialWrite = nullptr;
    // The following are null in a library of version 1.0.
    PclGetManufacturerInfo m_getManufacturerInfo = nullptr;
    PclGetNumSerialPorts m_getNumSerialPorts = nullptr;
    PclGetSerialPortIdentifier m_getSerialPortIdentifier = nullptr;
    PclFlushPort m_flushPort = nullptr;
    PclGetSupportedBaudRates m_getSupportedBaudRates = nullptr;
    PclSetBaudRate m_setBaudRate = nullptr;
    PclGetErrorText m_getErrorText = nullptr;
};

}  // namespace CLProtocol
