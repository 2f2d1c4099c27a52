/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the driver throws inside, and the codes that its C functions return for it
 */

#include "DriverError.h"

#include <fmt/format.h>

#include <array>
#include <utility>

#include "clser/ClSerial.h"
#include "gencp/Protocol.h"

namespace marlow {

namespace {

constexpr std::uint16_t kLastNumberedStatus = 0x3F;

constexpr std::array<std::pair<CLINT32, std::string_view>, 24> kTexts{{
    {CLProtocol::CLP_PENDING_WRITE, "The write is still pending."},
    {CLProtocol::CLP_INVALID_DEVICEID, "Not a DeviceID or template of this driver."},
    {CLProtocol::CLP_NO_DEVICE_FOUND, "The device was not found."},
    {CLProtocol::CLP_NO_XMLDESCRIPTION_FOUND, "The camera has no such description file."},
    {CLProtocol::CLP_INVALID_COOKIE, "The cookie stands for no connection."},
    {CLProtocol::CLP_LAST_ERROR, "There was no error."},
    {CLProtocol::CLP_PARAM_NOT_SUPPORTED, "The driver has no such parameter."},
    {CLProtocol::CLP_PARAM_READ_ONLY, "The parameter is read-only."},
    {CLProtocol::CLP_PARAM_SIZE, "The parameter has another size."},
    {CLProtocol::CLP_PARAM_VALUE, "The parameter can't have that value."},
    {kUnknownStatus, "The camera refused a command with a status that the standard does not name."},
    {kTechnologyStatus, "The camera refused a command with a technology-specific status."},
    {kDeviceStatus, "The camera refused a command with a device-specific status."},
    {kNoAnswer, "No camera answers."},
    {kBadAcknowledge, "The camera's acknowledge does not fit the command."},
    {kDamagedFile, "The description file has another SHA-1 than the camera says."},
    {kWriteStillPending, "A write is still pending on this connection."},
    {kNoWritePending, "No write is pending on this connection."},
    {kBaudRateChangeFailed, "The baud rate could not be changed."},
    {kBadRange, "The address or the length is out of bounds."},
    {kNoSerialRegisters, "The camera can't change its baud rate."},
    {kStaysPending, "The camera says again and again that it is not done."},
    {kSerialNonsense, "The serial library reports more bytes than were asked for."},
    {kProbeStopped, "Probing was stopped."},
}};

}  // namespace

NoAnswerError::NoAnswerError(const std::string& text) : DriverError(CL_ERR_TIMEOUT, text) {}

StatusError::StatusError(std::uint16_t status, const std::string& operation)
    : DriverError(CodeOfStatus(status), fmt::format("The camera refused {}: {} (GenCP status 0x{:04X}).", operation,
                                                    gencp::StatusName(status), status)),
      m_status(status) {}

/**
 * \brief The code for a GenCP error status
 * \param[in] status Status field of an acknowledge, with the error bit
 */
CLINT32 CodeOfStatus(std::uint16_t status) noexcept {
    switch (status & gencp::kStatusNameSpaceMask) {
        case 0:
            break;
        case gencp::kStatusNameSpaceTechnology:
            return kTechnologyStatus;
        default:
            return kDeviceStatus;
    }
    if (status == gencp::kStatusGenericError)
        return kGenericStatus;
    const auto code = static_cast<std::uint16_t>(status & gencp::kStatusCodeMask);
    return code <= kLastNumberedStatus ? kStatusCodes - code : kUnknownStatus;
}

/**
 * \brief What a code means in general
 * \param[in] code Any code
 *
 * \return Empty for a code that is not of CLProtocol or of this driver; others have texts for theirs
 */
std::string_view CodeText(CLINT32 code) noexcept {
    for (const auto& [known, text] : kTexts) {
        if (known == code)
            return text;
    }
    if (code == kInternalError)
        return "Internal error of the driver.";
    if (code == kGenericStatus)
        return "The camera refused a command: generic error.";
    if (code <= kStatusCodes && code >= kStatusCodes - kLastNumberedStatus)
        return "The camera refused a command.";
    return {};
}

}  // namespace marlow
