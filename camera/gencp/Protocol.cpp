/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Names of GenCP status codes
 */

#include "gencp/Protocol.h"

namespace gencp {

/**
 * \brief The name of an acknowledge's status, for messages
 * \param[in] status Status field of an acknowledge (GenCP, name space in bits 13 and 14)
 *
 * \return Words without the number; codes of other name spaces are called by their name space
 */
std::string_view StatusName(std::uint16_t status) noexcept {
    switch (status & kStatusNameSpaceMask) {
        case 0:
            break;
        case kStatusNameSpaceTechnology:
            return "technology-specific status";
        default:
            return "device-specific status";
    }
    switch (status) {
        case kStatusSuccess:
            return "success";
        case kStatusNotImplemented:
            return "not implemented";
        case kStatusInvalidParameter:
            return "invalid parameter";
        case kStatusInvalidAddress:
            return "invalid address";
        case kStatusWriteProtected:
            return "write protected";
        case kStatusBadAlignment:
            return "bad alignment";
        case kStatusAccessDenied:
            return "access denied";
        case kStatusBusy:
            return "busy";
        case kStatusMessageTimeout:
            return "message time-out";
        case kStatusInvalidHeader:
            return "invalid header";
        case kStatusWrongConfiguration:
            return "wrong configuration";
        case kStatusGenericError:
            return "generic error";
        default:
            return IsError(status) ? "unknown error" : "warning";
    }
}

}  // namespace gencp
