/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The standard's error codes in words
 */

#include "ErrorCodes.h"

#include "CLProtocol/CLProtocolTypes.h"
#include "clser/ClSerial.h"

namespace CLProtocol {

/**
 * \brief Text of an error code of the Camera Link serial API or of CLProtocol
 * \return The text; for codes of a driver's own and unknown ones a text that says so
 */
const char* StandardErrorText(std::int32_t code) noexcept {
    static constexpr struct {
        std::int32_t code;
        const char* text;
    } kTexts[] = {
        {CL_ERR_NO_ERR, "no error"},
        {CL_ERR_BUFFER_TOO_SMALL, "buffer too small"},
        {CL_ERR_MANU_DOES_NOT_EXIST, "maker does not exist"},
        {CL_ERR_PORT_IN_USE, "port in use"},
        {CL_ERR_TIMEOUT, "time-out"},
        {CL_ERR_INVALID_INDEX, "invalid index"},
        {CL_ERR_INVALID_REFERENCE, "invalid reference"},
        {CL_ERR_ERROR_NOT_FOUND, "error code not found"},
        {CL_ERR_BAUD_RATE_NOT_SUPPORTED, "baud rate not supported"},
        {CL_ERR_OUT_OF_MEMORY, "out of memory"},
        {CL_ERR_REGISTRY_KEY_NOT_FOUND, "registry key not found"},
        {CL_ERR_INVALID_PTR, "invalid pointer"},
        {CL_ERR_IN_USE, "in use"},
        {CL_ERR_UNABLE_TO_LOAD_DLL, "unable to load the library"},
        {CL_ERR_FUNCTION_NOT_FOUND, "function not found"},
        {CLP_PENDING_WRITE, "a write is still pending"},
        {CLP_INVALID_DEVICEID, "invalid DeviceID"},
        {CLP_NO_DEVICE_FOUND, "no device found"},
        {CLP_NO_XMLDESCRIPTION_FOUND, "no XML description found"},
        {CLP_INVALID_COOKIE, "invalid cookie"},
        {CLP_PARAM_NOT_SUPPORTED, "parameter not supported"},
        {CLP_PARAM_READ_ONLY, "parameter read-only"},
        {CLP_PARAM_SIZE, "parameter has another size"},
        {CLP_PARAM_VALUE, "parameter value invalid"},
        {CLP_DRIVER_NO_ANSWER, "no camera answers"},
    };
    for (const auto& entry : kTexts)
        if (entry.code == code)
            return entry.text;
    return code <= CLP_DRIVER_ERROR_FIRST && code >= CLP_DRIVER_ERROR_LAST ? "error of the driver" : "unknown error";
}

}  // namespace CLProtocol
