/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The GenICam exceptions
 */
#pragma once

#include <exception>
#include <string>

#include "Base/GCFormat.h"
#include "Base/GCString.h"

namespace GenICam {

/// Root of all GenICam exceptions.
class GCBASE_API GenericException : public std::exception {
public:
    /// \a sourceFileName and \a sourceLine tell where it was thrown, \a exceptionType the name of its class.
    GenericException(const char* description, const char* sourceFileName, unsigned sourceLine,
                     const char* exceptionType = "GenericException");
    ~GenericException() override;
    GenericException(const GenericException&) = default;
    GenericException& operator=(const GenericException&) = default;

    /// What happened, without the place.
    const char* GetDescription() const noexcept { return m_description.c_str(); }
    /// The source file that threw it, as the thrower names it.
    const char* GetSourceFileName() const noexcept { return m_sourceFileName.c_str(); }
    /// The line of that file, from 1.
    unsigned GetSourceLine() const noexcept { return m_sourceLine; }
    /// The name of the exception's class.
    const char* GetExceptionType() const noexcept { return m_exceptionType.c_str(); }
    /// Description, type and place in one text.
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    std::string m_description;
    std::string m_sourceFileName;
    unsigned m_sourceLine;
    std::string m_exceptionType;
    std::string m_what;
};

#define GENICAM_DECLARE_EXCEPTION(Name)                                                   \
    class GCBASE_API Name : public GenericException {                                     \
    public:                                                                               \
        Name(const char* description, const char* sourceFileName, unsigned sourceLine,    \
             const char* exceptionType = #Name)                                           \
            : GenericException(description, sourceFileName, sourceLine, exceptionType) {} \
        ~Name() override;                                                                 \
        Name(const Name&) = default;                                                      \
        Name& operator=(const Name&) = default;                                           \
    }

GENICAM_DECLARE_EXCEPTION(BadAllocException);
GENICAM_DECLARE_EXCEPTION(InvalidArgumentException);
GENICAM_DECLARE_EXCEPTION(OutOfRangeException);
GENICAM_DECLARE_EXCEPTION(PropertyException);
GENICAM_DECLARE_EXCEPTION(RuntimeException);
GENICAM_DECLARE_EXCEPTION(LogicalErrorException);
GENICAM_DECLARE_EXCEPTION(AccessException);
GENICAM_DECLARE_EXCEPTION(TimeoutException);
GENICAM_DECLARE_EXCEPTION(DynamicCastException);

#undef GENICAM_DECLARE_EXCEPTION

/// Makes an exception from a printf text: throw ExceptionReporter<RuntimeException>(file, line, type).Report(...).
template <class Exception>
class ExceptionReporter {
public:
    /// Where the exception is thrown, and the name of its class.
    ExceptionReporter(const char* sourceFileName, unsigned sourceLine, const char* exceptionType)
        : m_sourceFileName(sourceFileName), m_sourceLine(sourceLine), m_exceptionType(exceptionType) {}

    /// The exception with a text that is formatted as FormatTyped does; the caller throws it.
    template <class... Arguments>
    Exception Report(const char* format, const Arguments&... arguments) const {
        return Exception(FormatText(format, arguments...).c_str(), m_sourceFileName, m_sourceLine, m_exceptionType);
    }

private:
    const char* m_sourceFileName;
    unsigned m_sourceLine;
    const char* m_exceptionType;
};

}  // namespace GenICam

/// What reports an exception of this class, thrown at this place: throw GENICAM_REPORTER(RuntimeException)("...").
#define GENICAM_REPORTER(Name) GenICam::ExceptionReporter<GenICam::Name>(__FILE__, __LINE__, #Name).Report

#define GENERIC_EXCEPTION GENICAM_REPORTER(GenericException)
#define BAD_ALLOC_EXCEPTION GENICAM_REPORTER(BadAllocException)
#define INVALID_ARGUMENT_EXCEPTION GENICAM_REPORTER(InvalidArgumentException)
#define OUT_OF_RANGE_EXCEPTION GENICAM_REPORTER(OutOfRangeException)
#define PROPERTY_EXCEPTION GENICAM_REPORTER(PropertyException)
#define RUNTIME_EXCEPTION GENICAM_REPORTER(RuntimeException)
#define LOGICAL_ERROR_EXCEPTION GENICAM_REPORTER(LogicalErrorException)
#define ACCESS_EXCEPTION GENICAM_REPORTER(AccessException)
#define TIMEOUT_EXCEPTION GENICAM_REPORTER(TimeoutException)
#define DYNAMICCAST_EXCEPTION GENICAM_REPORTER(DynamicCastException)
