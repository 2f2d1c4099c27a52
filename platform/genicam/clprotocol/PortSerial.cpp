/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The serial line of a connected port, as an application uses it
 */

#include "PortSerial.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "CLProtocol/CLException.h"
#include "clser/ClSerial.h"

namespace CLProtocol {

namespace {

constexpr CLUINT32 kMaxTransfer = 64u << 20;

// What a call exchanges with its caller, which may have given it up when it returns.
struct Transfer {
    std::string bytes;
    CLUINT32 number = 0;
};

}  // namespace

CLINT32 PortSerial::Run(Call call, CLUINT32 timeoutMs) noexcept {
    try {
        return m_runner(std::move(call), std::chrono::milliseconds(timeoutMs));
    } catch (const CLErrException& error) {
        return error.GetErrorCode();
    } catch (const std::exception&) {
        return CL_ERR_INVALID_REFERENCE;
    }
}

CLINT32 PortSerial::clSerialRead(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept {
    if (bufferSize == nullptr || buffer == nullptr || *bufferSize > kMaxTransfer)
        return CL_ERR_INVALID_PTR;
    try {
        const auto transfer = std::make_shared<Transfer>();
        transfer->bytes.resize(*bufferSize);
        transfer->number = static_cast<CLUINT32>(transfer->bytes.size());
        const CLINT32 result = Run(
            [transfer, serialTimeout](ISerial& serial) {
                return serial.clSerialRead(transfer->bytes.data(), &transfer->number, serialTimeout);
            },
            serialTimeout);
        if (result >= 0) {
            *bufferSize = transfer->number;
            transfer->bytes.copy(buffer, transfer->number);
        }
        return result;
    } catch (const std::exception&) {
        return CL_ERR_OUT_OF_MEMORY;
    }
}

CLINT32 PortSerial::clSerialWrite(CLINT8* buffer, CLUINT32* bufferSize, CLUINT32 serialTimeout) noexcept {
    if (bufferSize == nullptr || buffer == nullptr || *bufferSize > kMaxTransfer)
        return CL_ERR_INVALID_PTR;
    try {
        const auto transfer = std::make_shared<Transfer>();
        transfer->bytes.assign(buffer, *bufferSize);
        const CLINT32 result = Run(
            [transfer, serialTimeout](ISerial& serial) {
                transfer->number = static_cast<CLUINT32>(transfer->bytes.size());
                return serial.clSerialWrite(transfer->bytes.data(), &transfer->number, serialTimeout);
            },
            serialTimeout);
        if (result >= 0)
            *bufferSize = transfer->number;
        return result;
    } catch (const std::exception&) {
        return CL_ERR_OUT_OF_MEMORY;
    }
}

CLINT32 PortSerial::clGetSupportedBaudRates(CLUINT32* baudRates) noexcept {
    if (baudRates == nullptr)
        return CL_ERR_INVALID_PTR;
    try {
        const auto transfer = std::make_shared<Transfer>();
        const CLINT32 result =
            Run([transfer](ISerial& serial) { return serial.clGetSupportedBaudRates(&transfer->number); });
        if (result >= 0)
            *baudRates = transfer->number;
        return result;
    } catch (const std::exception&) {
        return CL_ERR_OUT_OF_MEMORY;
    }
}

CLINT32 PortSerial::clSetBaudRate(CLUINT32 baudRate) noexcept {
    return Run([baudRate](ISerial& serial) { return serial.clSetBaudRate(baudRate); });
}

}  // namespace CLProtocol
