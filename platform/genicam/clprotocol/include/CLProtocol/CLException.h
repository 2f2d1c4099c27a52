/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CLErrException: a failure with its Camera Link error code
 */
#pragma once

#include "Base/GCException.h"

#ifdef CLProtocol_EXPORTS
#define CLPROTOCOL_API GCBASE_EXPORT
#else
#define CLPROTOCOL_API GCBASE_IMPORT
#endif

namespace CLProtocol {

/// A serial library, a driver or the module itself failed with a Camera Link or CLProtocol error code.
class CLPROTOCOL_API CLErrException : public GenICam::RuntimeException {
public:
    /// As GenericException, with a Camera Link or CLProtocol error code.
    CLErrException(const char* description, const char* sourceFileName, unsigned sourceLine, std::int32_t errorCode)
        : RuntimeException(description, sourceFileName, sourceLine, "CLErrException"), m_errorCode(errorCode) {}
    ~CLErrException() override;
    CLErrException(const CLErrException&) = default;
    CLErrException& operator=(const CLErrException&) = default;

    /// The code of the Camera Link serial API (-10001 ...), of CLProtocol (-20100 ...) or of a driver (-30000 ...).
    std::int32_t GetErrorCode() const noexcept { return m_errorCode; }

private:
    std::int32_t m_errorCode;
};

}  // namespace CLProtocol
