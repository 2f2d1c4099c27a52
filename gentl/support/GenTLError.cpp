/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Names of the error codes
 */
#include "support/GenTLError.h"

#include <array>

namespace gentl {

/// The code's name in the interface; a text for one that it does not have.
const char* NameOf(GC_ERROR code) noexcept {
    static constexpr std::array kNames{"GC_ERR_ERROR",
                                       "GC_ERR_NOT_INITIALIZED",
                                       "GC_ERR_NOT_IMPLEMENTED",
                                       "GC_ERR_RESOURCE_IN_USE",
                                       "GC_ERR_ACCESS_DENIED",
                                       "GC_ERR_INVALID_HANDLE",
                                       "GC_ERR_INVALID_ID",
                                       "GC_ERR_NO_DATA",
                                       "GC_ERR_INVALID_PARAMETER",
                                       "GC_ERR_IO",
                                       "GC_ERR_TIMEOUT",
                                       "GC_ERR_ABORT",
                                       "GC_ERR_INVALID_BUFFER",
                                       "GC_ERR_NOT_AVAILABLE",
                                       "GC_ERR_INVALID_ADDRESS",
                                       "GC_ERR_BUFFER_TOO_SMALL",
                                       "GC_ERR_INVALID_INDEX",
                                       "GC_ERR_PARSING_CHUNK_DATA",
                                       "GC_ERR_INVALID_VALUE",
                                       "GC_ERR_RESOURCE_EXHAUSTED",
                                       "GC_ERR_OUT_OF_MEMORY",
                                       "GC_ERR_BUSY",
                                       "GC_ERR_AMBIGUOUS"};
    if (code == GC_ERR_SUCCESS)
        return "GC_ERR_SUCCESS";
    const auto index = static_cast<std::size_t>(GC_ERR_ERROR - code);
    return code <= GC_ERR_ERROR && index < kNames.size() ? kNames[index] : "unknown error";
}

}  // namespace gentl
