/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One loaded Camera Link serial library
 */

#include "SerialLibrary.h"

#include <array>

#include "CLProtocol/CLException.h"
#include "ErrorCodes.h"
#include "ErrorReporter.h"
#include "ForeignCall.h"
#include "ModuleLog.h"
#include "SerialErrorText.h"
#include "Texts.h"
#include "os/Path.h"

namespace CLProtocol {

namespace {

constexpr std::uint32_t kMaxPorts = 256;
constexpr std::uint32_t kMaxOldPorts = 16;
constexpr TextRoom kTextRoom{256, 65536};

}  // namespace

template <class Function, class... Arguments>
auto SerialLibrary::Call(const char* name, Function function, Arguments... arguments) const {
    return CallForeign(m_path, name, function, arguments...);
}

/**
 * \class SerialLibrary
 * \brief A frame grabber maker's library with the functions of the Camera Link standard, versions 1.0 to 2.1
 *
 * Nothing that it answers is trusted: texts end within their buffers, counts are bounded, exceptions are stopped.
 *
 * \context Any thread. The library itself may know better or worse: calls about one port come one after the other.
 */

/**
 * \brief Load a library
 * \throw os::LibraryError It can't be loaded or lacks a function of its version
 * \throw GenICam::RuntimeException It is no Camera Link library, or it failed
 */
SerialLibrary::SerialLibrary(const std::string& path) : m_path(path) {
    {
        const ForeignScope scope(path, "(loading)");
        m_library = os::Library(path);
    }
    LookUp();
    CheckVersion();
    if (m_getNumSerialPorts == nullptr)
        m_oldPorts = CountPortsByOpening();
}

void SerialLibrary::LookUp() {
    m_serialInit = reinterpret_cast<PclSerialInit>(m_library.Symbol("clSerialInit"));
    m_serialClose = reinterpret_cast<PclSerialClose>(m_library.Symbol("clSerialClose"));
    m_serialRead = reinterpret_cast<PclSerialRead>(m_library.Symbol("clSerialRead"));
    m_serialWrite = reinterpret_cast<PclSerialWrite>(m_library.Symbol("clSerialWrite"));
    m_getManufacturerInfo = reinterpret_cast<PclGetManufacturerInfo>(m_library.FindSymbol("clGetManufacturerInfo"));
    if (m_getManufacturerInfo == nullptr)
        return;  // version 1.0
    m_getNumSerialPorts = reinterpret_cast<PclGetNumSerialPorts>(m_library.Symbol("clGetNumSerialPorts"));
    m_getSerialPortIdentifier =
        reinterpret_cast<PclGetSerialPortIdentifier>(m_library.Symbol("clGetSerialPortIdentifier"));
    m_flushPort = reinterpret_cast<PclFlushPort>(m_library.Symbol("clFlushPort"));
    m_getSupportedBaudRates = reinterpret_cast<PclGetSupportedBaudRates>(m_library.Symbol("clGetSupportedBaudRates"));
    m_setBaudRate = reinterpret_cast<PclSetBaudRate>(m_library.Symbol("clSetBaudRate"));
    m_getErrorText = reinterpret_cast<PclGetErrorText>(m_library.Symbol("clGetErrorText"));
}

std::string SerialLibrary::AskForMaker(std::uint32_t& version) const {
    const ForeignText maker = AskForText(
        [&](char* name, std::uint32_t* size) {
            return Call("clGetManufacturerInfo", m_getManufacturerInfo, name, size, &version);
        },
        kTextRoom);
    if (maker.result < 0)
        throw RUNTIME_EXCEPTION("Function 'clGetManufacturerInfo' of '%s' failed: %s (%d)", m_path,
                                ErrorText(maker.result), maker.result);
    return WithoutControlCharacters(maker.text);
}

void SerialLibrary::CheckVersion() {
    if (m_getManufacturerInfo == nullptr)
        return;
    m_maker = AskForMaker(m_version);
    if (m_version < CL_DLL_VERSION_1_0 || m_version > CL_DLL_VERSION_2_1)
        throw RUNTIME_EXCEPTION("'%s' is no Camera Link library of version 1.0 to 2.1: it reports version number %u",
                                m_path, m_version);
}

/**
 * \brief The maker's name
 * \return What the library says; for a library of version 1.0, which has none, its file's name
 * \throw GenICam::RuntimeException The library failed
 */
std::string SerialLibrary::Maker() const {
    if (m_getManufacturerInfo == nullptr) {
        const std::string file = os::FileNameOf(m_path);
        return file.substr(0, file.find('.'));
    }
    std::uint32_t version = 0;
    return AskForMaker(version);
}

/// Version of the Camera Link standard.
std::string SerialLibrary::Version() const {
    constexpr std::array kNames = {"1.0", "1.1", "2.0", "2.1"};
    return kNames.at(m_version - CL_DLL_VERSION_1_0);
}

// A library of version 1.0 does not tell how many ports it has.
std::uint32_t SerialLibrary::CountPortsByOpening() const {
    std::uint32_t count = 0;
    for (; count < kMaxOldPorts; ++count) {
        hSerRef port = nullptr;
        const std::int32_t result = Call("clSerialInit", m_serialInit, count, &port);
        if (result >= 0)
            Close(port);
        else if (result != CL_ERR_PORT_IN_USE)
            break;
    }
    return count;
}

/**
 * \brief The names of the ports, by index
 * \return One name per port, the empty text for one that has none
 * \throw GenICam::RuntimeException The library failed
 */
std::vector<std::string> SerialLibrary::PortNames() const {
    std::uint32_t count = m_oldPorts;
    if (m_getNumSerialPorts != nullptr) {
        if (const std::int32_t result = Call("clGetNumSerialPorts", m_getNumSerialPorts, &count); result < 0)
            throw RUNTIME_EXCEPTION("Function 'clGetNumSerialPorts' of '%s' failed: %s (%d)", m_path, ErrorText(result),
                                    result);
    }
    if (count > kMaxPorts) {
        Log(CLP_LOG_WARN, "'%s' reports %u ports; the first %u are used", m_path, count, kMaxPorts);
        count = kMaxPorts;
    }
    std::vector<std::string> names;
    for (std::uint32_t index = 0; index < count; ++index)
        names.push_back(PortName(index).value_or(std::string()));
    return names;
}

/// The name that a port has now; nothing when there is no such port.
std::optional<std::string> SerialLibrary::PortName(std::uint32_t index) const {
    if (m_getSerialPortIdentifier == nullptr)
        return index < m_oldPorts ? std::optional("Port" + std::to_string(index)) : std::nullopt;
    const ForeignText name = AskForText(
        [&](char* id, std::uint32_t* size) {
            return Call("clGetSerialPortIdentifier", m_getSerialPortIdentifier, index, id, size);
        },
        kTextRoom);
    if (name.result >= 0)
        return WithoutControlCharacters(name.text);
    Log(CLP_LOG_WARN, "Port %u of '%s' has no name: %s (%d)", index, m_path, ErrorText(name.result), name.result);
    return std::nullopt;
}

/**
 * \brief Open a port
 * \param[in] portId The port's name for messages
 * \return What the library calls the port
 * \throw CLErrException It can't be opened; the text is the library's
 */
hSerRef SerialLibrary::Open(std::uint32_t index, const std::string& portId) const {
    hSerRef port = nullptr;
    const std::int32_t result = Call("clSerialInit", m_serialInit, index, &port);
    if (result >= 0)
        return port;
    throw CL_ERR_EXCEPTION(result)("Could not open port '%s': function 'clSerialInit' of '%s' failed: %s", portId,
                                   m_path, ErrorText(result));
}

void SerialLibrary::Close(hSerRef port) const {
    Call("clSerialClose", m_serialClose, port);
}

std::int32_t SerialLibrary::Read(hSerRef port, char* buffer, std::uint32_t* size, std::uint32_t timeoutMs) const {
    return Call("clSerialRead", m_serialRead, port, buffer, size, timeoutMs);
}

std::int32_t SerialLibrary::Write(hSerRef port, char* buffer, std::uint32_t* size, std::uint32_t timeoutMs) const {
    return Call("clSerialWrite", m_serialWrite, port, buffer, size, timeoutMs);
}

/// The rates that a port can be set to, as flags; a library of version 1.0 has 9600 only.
std::int32_t SerialLibrary::GetSupportedBaudRates(hSerRef port, std::uint32_t* mask) const {
    *mask = CL_BAUDRATE_9600;
    return m_getSupportedBaudRates == nullptr ? static_cast<std::int32_t>(CL_ERR_NO_ERR)
                                              : Call("clGetSupportedBaudRates", m_getSupportedBaudRates, port, mask);
}

std::int32_t SerialLibrary::SetBaudRate(hSerRef port, std::uint32_t flag) const {
    if (m_setBaudRate != nullptr)
        return Call("clSetBaudRate", m_setBaudRate, port, flag);
    return flag == CL_BAUDRATE_9600 ? CL_ERR_NO_ERR : CL_ERR_BAUD_RATE_NOT_SUPPORTED;
}

/// Discards what a port has received, where the library can.
void SerialLibrary::Flush(hSerRef port) const {
    if (m_flushPort != nullptr)
        Call("clFlushPort", m_flushPort, port);
}

/// The library's own text for an error code, else the standard's. Never throws but for lack of memory.
std::string SerialLibrary::ErrorText(std::int32_t code) const {
    try {
        if (m_getErrorText != nullptr) {
            const ForeignText text = AskForErrorText(m_path, m_maker, m_getErrorText, code);
            if (text.result >= 0 && !text.text.empty())
                return WithoutControlCharacters(text.text);
        }
    } catch (const std::exception& error) {
        Log(CLP_LOG_WARN, "No text for error %d of '%s': %s", code, m_path, error.what());
    }
    return StandardErrorText(code);
}

}  // namespace CLProtocol
