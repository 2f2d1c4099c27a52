/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The GenICam exceptions
 */

#include "Base/GCException.h"

namespace GenICam {

GenericException::GenericException(const char* description, const char* sourceFileName, unsigned sourceLine,
                                   const char* exceptionType)
    : m_description(description != nullptr ? description : ""),
      m_sourceFileName(sourceFileName != nullptr ? sourceFileName : ""),
      m_sourceLine(sourceLine),
      m_exceptionType(exceptionType != nullptr ? exceptionType : ""),
      m_what(FormatText("%s : %s thrown (file '%s', line %u)", m_description, m_exceptionType, m_sourceFileName,
                        m_sourceLine)) {}

// The destructors are here so that each type has one home, which run-time type checks across libraries need.
GenericException::~GenericException() = default;
BadAllocException::~BadAllocException() = default;
InvalidArgumentException::~InvalidArgumentException() = default;
OutOfRangeException::~OutOfRangeException() = default;
PropertyException::~PropertyException() = default;
RuntimeException::~RuntimeException() = default;
LogicalErrorException::~LogicalErrorException() = default;
AccessException::~AccessException() = default;
TimeoutException::~TimeoutException() = default;
DynamicCastException::~DynamicCastException() = default;

}  // namespace GenICam
