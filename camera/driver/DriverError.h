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

/// Codes of this driver, by which a host tells what was refused from what was not answered.
enum DriverCode : CLINT32 {
    kStatusCodes = CLProtocol::CLP_DRIVER_STATUS,
    kUnknownStatus = CLProtocol::CLP_DRIVER_STATUS_UNKNOWN,
    kTechnologyStatus = CLProtocol::CLP_DRIVER_STATUS_TECHNOLOGY,
    kDeviceStatus = CLProtocol::CLP_DRIVER_STATUS_DEVICE,
    kGenericStatus = CLProtocol::CLP_DRIVER_STATUS_GENERIC,
    kNoAnswer = CLProtocol::CLP_DRIVER_NO_ANSWER,
    kBadAcknowledge = CLProtocol::CLP_DRIVER_BAD_ACKNOWLEDGE,
    kDamagedFile = CLProtocol::CLP_DRIVER_DAMAGED_FILE,
    kWriteStillPending = CLProtocol::CLP_DRIVER_WRITE_PENDING,
    kNoWritePending = CLProtocol::CLP_DRIVER_NO_WRITE_PENDING,
    kBaudRateChangeFailed = CLProtocol::CLP_DRIVER_RATE_CHANGE_FAILED,
    kBadRange = CLProtocol::CLP_DRIVER_BAD_RANGE,
    kNoSerialRegisters = CLProtocol::CLP_DRIVER_NO_SERIAL_REGISTERS,
    kStaysPending = CLProtocol::CLP_DRIVER_STAYS_PENDING,
    kSerialNonsense = CLProtocol::CLP_DRIVER_SERIAL_NONSENSE,
    kProbeStopped = CLProtocol::CLP_DRIVER_PROBE_STOPPED,
    kInternalError = CLProtocol::CLP_DRIVER_INTERNAL_ERROR
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
