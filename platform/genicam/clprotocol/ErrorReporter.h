/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Failures of the module's own, each with its code
 */
#pragma once

#include <cstdint>

#include "Base/GCFormat.h"
#include "CLProtocol/CLException.h"

namespace CLProtocol {

/// Makes a CLErrException whose text ends with its code in brackets; the caller throws it.
class ErrorReporter {
public:
    ErrorReporter(const char* sourceFileName, unsigned sourceLine, std::int32_t code)
        : m_sourceFileName(sourceFileName), m_sourceLine(sourceLine), m_code(code) {}

    template <class... Arguments>
    CLErrException Report(const char* format, const Arguments&... arguments) const {
        const auto text = GenICam::FormatText("%s (%d)", GenICam::FormatText(format, arguments...), m_code);
        return CLErrException(text.c_str(), m_sourceFileName, m_sourceLine, m_code);
    }

private:
    const char* m_sourceFileName;
    unsigned m_sourceLine;
    std::int32_t m_code;
};

}  // namespace CLProtocol

/// throw CL_ERR_EXCEPTION(CL_ERR_TIMEOUT)("Port '%s' ...", port);
#define CL_ERR_EXCEPTION(code) CLProtocol::ErrorReporter(__FILE__, __LINE__, code).Report
