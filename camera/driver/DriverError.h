/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the driver throws inside, and the codes that its C functions return for it
 */
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "CLProtocol/CLProtocolC.h"

namespace marlow {

/// Codes of this driver, within the range that CLProtocol leaves to drivers (-30000 to -30999).
enum DriverCode : CLINT32 {
    kStatusCodes = -30100,       ///< minus the code of a GenCP status 0x8001 to 0x803F
    kUnknownStatus = -30180,     ///< a GenCP error status that the standard does not name
    kTechnologyStatus = -30181,  ///< an error status of the technology's own
    kDeviceStatus = -30182,      ///< an error status of the device's own
    kGenericStatus = -30199,     ///< GenCP status 0x8FFF
    kNoAnswer = CLProtocol::CLP_DRIVER_NO_ANSWER,
    kBadAcknowledge = -30210,        ///< a whole, intact acknowledge that does not fit its command
    kDamagedFile = -30211,           ///< a description whose SHA-1 is another than the camera says
    kWriteStillPending = -30212,     ///< an access while a write waits to be continued
    kNoWritePending = -30213,        ///< nothing to continue
    kBaudRateChangeFailed = -30214,  ///< camera and host are back at the old rate
    kBadRange = -30215,              ///< address or length out of bounds
    kNoSerialRegisters = -30216,     ///< the camera can't change its baud rate
    kSerialNonsense = -30218,        ///< the serial library says that it moved more bytes than asked for
    kProbeStopped = -30219,
    kInternalError = -30299
};

/// A failure with the code that the C function returns for it.
class DriverError : public std::runtime_error {
public:
    DriverError(CLINT32 code, const std::string& text) : std::runtime_error(text), m_code(code) {}
    CLINT32 Code() const noexcept { return m_code; }

private:
    CLINT32 m_code;
};

/// No acknowledge came in time, whatever was repeated.
class NoAnswerError : public DriverError {
public:
    explicit NoAnswerError(const std::string& text);
};

/// The camera refused a command.
class StatusError : public DriverError {
public:
    StatusError(std::uint16_t status, const std::string& operation);
    std::uint16_t Status() const noexcept { return m_status; }

private:
    std::uint16_t m_status;
};

CLINT32 CodeOfStatus(std::uint16_t status) noexcept;
std::string_view CodeText(CLINT32 code) noexcept;

}  // namespace marlow
