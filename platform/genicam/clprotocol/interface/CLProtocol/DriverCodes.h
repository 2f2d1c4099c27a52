/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Codes in the range that CLProtocol leaves to drivers (-30000 to -30999), whose meaning the module knows
 *
 * Every driver may use others. These tell a host whether a camera has refused or whether nobody answers, and with
 * which exception an application hears of it (docs/error-codes.md).
 */
#pragma once

#include "CLProtocol/CLProtocolTypes.h"

#ifdef __cplusplus
namespace CLProtocol {
#endif

enum CLP_DRIVER_CODES CLP_SIZED {
    /* A camera's refusals: -30100 minus the code of the GenCP status 0x8001 to 0x803F. */
    CLP_DRIVER_STATUS = -30100,
    CLP_DRIVER_STATUS_NOT_IMPLEMENTED = -30101,
    CLP_DRIVER_STATUS_INVALID_PARAMETER = -30102,
    CLP_DRIVER_STATUS_INVALID_ADDRESS = -30103,
    CLP_DRIVER_STATUS_WRITE_PROTECTED = -30104,
    CLP_DRIVER_STATUS_BAD_ALIGNMENT = -30105,
    CLP_DRIVER_STATUS_ACCESS_DENIED = -30106,
    CLP_DRIVER_STATUS_BUSY = -30107,
    CLP_DRIVER_STATUS_MESSAGE_TIMEOUT = -30111,
    CLP_DRIVER_STATUS_INVALID_HEADER = -30114,
    CLP_DRIVER_STATUS_WRONG_CONFIGURATION = -30115,
    CLP_DRIVER_STATUS_LAST = -30163,
    CLP_DRIVER_STATUS_UNKNOWN = -30180,    /**< an error status that the standard does not name */
    CLP_DRIVER_STATUS_TECHNOLOGY = -30181, /**< an error status of the technology's own */
    CLP_DRIVER_STATUS_DEVICE = -30182,     /**< an error status of the device's own */
    CLP_DRIVER_STATUS_GENERIC = -30199,    /**< GenCP status 0x8FFF */

    CLP_DRIVER_BAD_ACKNOWLEDGE = -30210,     /**< a whole, intact acknowledge that does not fit its command */
    CLP_DRIVER_DAMAGED_FILE = -30211,        /**< a description whose SHA-1 is another than the camera says */
    CLP_DRIVER_WRITE_PENDING = -30212,       /**< an access while a write waits to be continued */
    CLP_DRIVER_NO_WRITE_PENDING = -30213,    /**< nothing to continue */
    CLP_DRIVER_RATE_CHANGE_FAILED = -30214,  /**< camera and host are back at the rate before */
    CLP_DRIVER_BAD_RANGE = -30215,           /**< address or length out of bounds */
    CLP_DRIVER_NO_SERIAL_REGISTERS = -30216, /**< the camera can't change its baud rate */
    CLP_DRIVER_STAYS_PENDING = -30217,       /**< a camera that says again and again that it is not done */
    CLP_DRIVER_SERIAL_NONSENSE = -30218,     /**< the serial library says that it moved more bytes than asked for */
    CLP_DRIVER_PROBE_STOPPED = -30219,
    CLP_DRIVER_INTERNAL_ERROR = -30299
};

#ifdef __cplusplus
}  // namespace CLProtocol
#endif
