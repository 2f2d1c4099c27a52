/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The exported functions of the Camera Link serial library: the twelve of API version 2.1, and one that hosts call
 * without asking whether it is there
 */

#include <cstddef>
#include <cstring>
#include <new>
#include <string>

#include "ErrorText.h"
#include "PortList.h"
#include "PortTable.h"
#include "SerialDevice.h"
#include "SerialError.h"
#include "SerialPort.h"
#include "base/Immortal.h"
#include "clser/ClSerial.h"

#ifdef _WIN32
#define CLSERTTY_EXPORT extern "C" __declspec(dllexport)
#else
#define CLSERTTY_EXPORT extern "C" [[gnu::visibility("default")]]
#endif

namespace {

using namespace ClSerTty;

constexpr const char* kMakerName = "COM_Port";

/// Never destroyed: an application may still close its ports when its own static objects go.
PortTable& Ports() {
    static base::Immortal<PortTable> table;
    return table.Get();
}

/// The one place where exceptions become codes; none leaves the library.
template <typename Operation>
std::int32_t Guard(Operation&& operation) noexcept {
    try {
        operation();
        return CL_ERR_NO_ERR;
    } catch (const SerialError& error) {
        RememberError(error.Code(), error.what());
        return error.Code();
    } catch (const std::bad_alloc&) {
        RememberError(CL_ERR_OUT_OF_MEMORY, "");
        return CL_ERR_OUT_OF_MEMORY;
    } catch (const std::exception& error) {
        RememberError(CL_ERR_INVALID_REFERENCE, error.what());
        return CL_ERR_INVALID_REFERENCE;
    } catch (...) {
        RememberError(CL_ERR_INVALID_REFERENCE, "");
        return CL_ERR_INVALID_REFERENCE;
    }
}

void RequireNotNull(const void* pointer, const char* name) {
    if (pointer == nullptr)
        throw SerialError(CL_ERR_INVALID_PTR, std::string("The argument '") + name + "' is null.");
}

/// The size is checked first: a null buffer of size 0 asks for the size that is needed.
void CopyText(const std::string& text, char* buffer, std::uint32_t* size) {
    RequireNotNull(size, "size");
    const std::uint32_t given = *size;
    const auto needed = static_cast<std::uint32_t>(text.size() + 1);
    *size = needed;
    if (given < needed) {
        throw SerialError(CL_ERR_BUFFER_TOO_SMALL, "The text takes " + std::to_string(needed) +
                                                       " bytes, the buffer has " + std::to_string(given) + ".");
    }
    RequireNotNull(buffer, "buffer");
    std::memcpy(buffer, text.c_str(), needed);
}

}  // namespace

/**
 * \brief Give the maker's name and the version of the interface
 * \param[out] name Gets "COM_Port"
 * \param[in,out] size Bytes that \a name has; gets those used or needed, NUL included
 * \param[out] version Gets CL_DLL_VERSION_2_1
 */
CLSERTTY_EXPORT std::int32_t clGetManufacturerInfo(char* name, std::uint32_t* size, std::uint32_t* version) noexcept {
    return Guard([&] {
        RequireNotNull(version, "version");
        *version = CL_DLL_VERSION_2_1;
        CopyText(kMakerName, name, size);
    });
}

/**
 * \brief Look for the machine's ports and count them
 *
 * The calling thread's indices mean this list until it counts again.
 */
CLSERTTY_EXPORT std::int32_t clGetNumSerialPorts(std::uint32_t* count) noexcept {
    return Guard([&] {
        RequireNotNull(count, "count");
        *count = static_cast<std::uint32_t>(RefreshPorts());
    });
}

/**
 * \brief Give a port's name
 * \param[in] index Below the count of clGetNumSerialPorts
 */
CLSERTTY_EXPORT std::int32_t clGetSerialPortIdentifier(std::uint32_t index, char* id, std::uint32_t* size) noexcept {
    return Guard([&] { CopyText(PortAt(index).name, id, size); });
}

/**
 * \brief Open a port for exclusive use at 9600 baud
 * \param[in] index Below the count of clGetNumSerialPorts
 * \param[out] ref Gets the reference, or null
 * \return 0, CL_ERR_PORT_IN_USE, or CL_ERR_INVALID_INDEX when there is no such port or it cannot be opened
 */
CLSERTTY_EXPORT std::int32_t clSerialInit(std::uint32_t index, hSerRef* ref) noexcept {
    return Guard([&] {
        RequireNotNull(ref, "ref");
        *ref = nullptr;
        const PortInfo port = PortAt(index);
        *ref = Ports().Add(std::make_shared<SerialPort>(port.name, SerialDevice::Open(port)));
    });
}

/**
 * \brief Close a port; the port is free when this returns
 * \param[in] ref Anything that is no open port's reference is ignored
 */
CLSERTTY_EXPORT void clSerialClose(hSerRef ref) noexcept {
    static_cast<void>(Guard([&] { Ports().Remove(ref)->Close(); }));
}

/**
 * \brief Read exactly \a size bytes
 *
 * Keeps no other thread from anything but reading.
 * \param[in] size Bytes wanted, and copied when the call succeeds; stays what it is, for those who ask again with it
 * \param[in] timeoutMs Bound of the wait, in ms
 * \return 0; CL_ERR_TIMEOUT (nothing is copied, what arrived is kept); CL_ERR_INVALID_REFERENCE for a foreign reference
 * or a port that has gone
 */
CLSERTTY_EXPORT std::int32_t clSerialRead(hSerRef ref, char* buffer, std::uint32_t* size,
                                          std::uint32_t timeoutMs) noexcept {
    return Guard([&] {
        RequireNotNull(size, "size");
        if (*size > 0)
            RequireNotNull(buffer, "buffer");
        Ports().Get(ref)->Read({buffer, *size}, timeoutMs);
    });
}

/**
 * \brief Write bytes
 * \param[in,out] size Bytes to write; gets the number of those that the line took
 * \param[in] timeoutMs Bound of the wait, in ms
 * \return 0; CL_ERR_TIMEOUT; CL_ERR_INVALID_REFERENCE for a foreign reference or a port that has gone
 */
CLSERTTY_EXPORT std::int32_t clSerialWrite(hSerRef ref, char* buffer, std::uint32_t* size,
                                           std::uint32_t timeoutMs) noexcept {
    return Guard([&] {
        RequireNotNull(size, "size");
        const std::uint32_t given = *size;
        *size = 0;
        if (given > 0)
            RequireNotNull(buffer, "buffer");
        const std::size_t done = Ports().Get(ref)->Write({buffer, given}, timeoutMs);
        *size = static_cast<std::uint32_t>(done);
        if (done < given) {
            throw SerialError(CL_ERR_TIMEOUT, "The line took only " + std::to_string(done) + " of " +
                                                  std::to_string(given) + " bytes within " + std::to_string(timeoutMs) +
                                                  " ms.");
        }
    });
}

/**
 * \brief Count the bytes that a read gets without waiting
 */
CLSERTTY_EXPORT std::int32_t clGetNumBytesAvail(hSerRef ref, std::uint32_t* count) noexcept {
    return Guard([&] {
        RequireNotNull(count, "count");
        *count = static_cast<std::uint32_t>(Ports().Get(ref)->BytesAvailable());
    });
}

/**
 * \brief Throw away all bytes that arrived and were not read
 */
CLSERTTY_EXPORT std::int32_t clFlushPort(hSerRef ref) noexcept {
    return Guard([&] { Ports().Get(ref)->Flush(); });
}

/**
 * \brief Give the rates that the port can do
 * \param[out] mask Camera Link flags
 */
CLSERTTY_EXPORT std::int32_t clGetSupportedBaudRates(hSerRef ref, std::uint32_t* mask) noexcept {
    return Guard([&] {
        RequireNotNull(mask, "mask");
        *mask = Ports().Get(ref)->SupportedBaudRates();
    });
}

/**
 * \brief Change the rate, after what was written has left
 * \param[in] flag One flag, or CL_BAUDRATE_FASTEST
 */
CLSERTTY_EXPORT std::int32_t clSetBaudRate(hSerRef ref, std::uint32_t flag) noexcept {
    return Guard([&] { Ports().Get(ref)->SetBaudRate(flag); });
}

/**
 * \brief Do nothing
 *
 * No function of the standard, whose lines have 8 data bits and no parity always. There are libraries that have it, and
 * hosts that call it after opening a port without asking whether it is there.
 *
 * \return 0; CL_ERR_INVALID_REFERENCE for a foreign reference
 */
CLSERTTY_EXPORT std::int32_t clSetParity(hSerRef ref, std::uint32_t /* parity */) noexcept {
    return Guard([&] { static_cast<void>(Ports().Get(ref)); });
}

/**
 * \brief Give the text for an error code
 *
 * When the calling thread's last error had that code, the text says what happened then, else what the code means.
 *
 * \return 0, CL_ERR_ERROR_NOT_FOUND, CL_ERR_BUFFER_TOO_SMALL or CL_ERR_INVALID_PTR; none of these becomes the last
 * error
 */
CLSERTTY_EXPORT std::int32_t clGetErrorText(std::int32_t code, char* text, std::uint32_t* size) noexcept {
    try {
        const std::optional<std::string> found = ErrorText(code);
        if (!found)
            return CL_ERR_ERROR_NOT_FOUND;
        CopyText(*found, text, size);
        return CL_ERR_NO_ERR;
    } catch (const SerialError& error) {
        return error.Code();
    } catch (...) {
        return CL_ERR_OUT_OF_MEMORY;
    }
}
