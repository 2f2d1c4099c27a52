/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What an error code means: a refusal, or a line on which nobody answers
 */

#include "Failures.h"

#include <optional>

#include "CLProtocol/CLException.h"
#include "CLProtocol/DriverCodes.h"
#include "clser/ClSerial.h"

namespace CLProtocol {

namespace {

// With which exception an application hears of a code. docs/error-codes.md shows this table to users.
enum class Meaning {
    kLine,      ///< CLErrException: nobody answers, or the line can't be used
    kAccess,    ///< AccessException
    kRange,     ///< OutOfRangeException
    kArgument,  ///< InvalidArgumentException
    kBusy,      ///< TimeoutException: the camera says that it has no time
    kMemory,    ///< BadAllocException
    kNonsense   ///< RuntimeException: it answers, but what makes no sense
};

struct Entry {
    std::int32_t code;
    Meaning meaning;
};

constexpr Entry kTable[] = {
    {CL_ERR_BUFFER_TOO_SMALL, Meaning::kArgument},
    {CL_ERR_BAUD_RATE_NOT_SUPPORTED, Meaning::kRange},
    {CL_ERR_OUT_OF_MEMORY, Meaning::kMemory},
    {CL_ERR_INVALID_PTR, Meaning::kArgument},
    {CLP_INVALID_DEVICEID, Meaning::kArgument},
    {CLP_NO_XMLDESCRIPTION_FOUND, Meaning::kAccess},
    {CLP_PARAM_NOT_SUPPORTED, Meaning::kAccess},
    {CLP_PARAM_READ_ONLY, Meaning::kAccess},
    {CLP_PARAM_SIZE, Meaning::kArgument},
    {CLP_PARAM_VALUE, Meaning::kRange},
    {CLP_DRIVER_STATUS_NOT_IMPLEMENTED, Meaning::kAccess},
    {CLP_DRIVER_STATUS_INVALID_PARAMETER, Meaning::kArgument},
    {CLP_DRIVER_STATUS_INVALID_ADDRESS, Meaning::kRange},
    {CLP_DRIVER_STATUS_WRITE_PROTECTED, Meaning::kAccess},
    {CLP_DRIVER_STATUS_BAD_ALIGNMENT, Meaning::kArgument},
    {CLP_DRIVER_STATUS_ACCESS_DENIED, Meaning::kAccess},
    {CLP_DRIVER_STATUS_BUSY, Meaning::kBusy},
    {CLP_DRIVER_STATUS_MESSAGE_TIMEOUT, Meaning::kBusy},
    {CLP_DRIVER_STATUS_INVALID_HEADER, Meaning::kArgument},
    {CLP_DRIVER_STATUS_WRONG_CONFIGURATION, Meaning::kAccess},
    {CLP_DRIVER_NO_ANSWER, Meaning::kLine},
    {CLP_DRIVER_BAD_ACKNOWLEDGE, Meaning::kNonsense},
    {CLP_DRIVER_DAMAGED_FILE, Meaning::kNonsense},
    {CLP_DRIVER_WRITE_PENDING, Meaning::kBusy},
    {CLP_DRIVER_NO_WRITE_PENDING, Meaning::kArgument},
    {CLP_DRIVER_RATE_CHANGE_FAILED, Meaning::kRange},
    {CLP_DRIVER_BAD_RANGE, Meaning::kRange},
    {CLP_DRIVER_NO_SERIAL_REGISTERS, Meaning::kAccess},
    {CLP_DRIVER_STAYS_PENDING, Meaning::kBusy},
    {CLP_DRIVER_SERIAL_NONSENSE, Meaning::kLine},
    {CLP_DRIVER_PROBE_STOPPED, Meaning::kLine},
    {CLP_DRIVER_INTERNAL_ERROR, Meaning::kNonsense},
};

bool IsDriversOwn(std::int32_t code) {
    return code <= CLP_DRIVER_ERROR_FIRST && code >= CLP_DRIVER_ERROR_LAST;
}

bool IsStatus(std::int32_t code) {
    return (code < CLP_DRIVER_STATUS && code >= CLP_DRIVER_STATUS_LAST) ||
           (code <= CLP_DRIVER_STATUS_UNKNOWN && code >= CLP_DRIVER_STATUS_GENERIC);
}

std::optional<Meaning> Find(std::int32_t code) {
    for (const Entry& entry : kTable)
        if (entry.code == code)
            return entry.meaning;
    return IsStatus(code) ? std::optional(Meaning::kAccess) : std::nullopt;
}

// Each driver may give a code of its own range another meaning: there the line has the last word, and the only one
// about a code that nobody knows. A code that says nothing of a line that was not used is taken for the worse.
Meaning MeaningOf(std::int32_t code, LineEvidence evidence) {
    const std::optional<Meaning> known = Find(code);
    if (!IsDriversOwn(code))
        return known.value_or(Meaning::kLine);
    if (evidence == LineEvidence::kSilent || evidence == LineEvidence::kFailed)
        return Meaning::kLine;
    return known.value_or(evidence == LineEvidence::kAnswered ? Meaning::kAccess : Meaning::kLine);
}

}  // namespace

/**
 * \brief Throw what stands for an error code that a driver gave for a connected camera
 * \param[in] text Description, the code included
 * \param[in] code Negative
 * \param[in] evidence What the line has shown during the call
 * \throw CLErrException Nobody answers, or the line is broken: whoever watches the camera may take it for gone
 * \throw GenICam::AccessException, OutOfRangeException, InvalidArgumentException, TimeoutException The camera or the
 * driver refuses while the line works
 * \throw GenICam::RuntimeException, BadAllocException The answer makes no sense; the host has no memory
 */
void ThrowFailure(const std::string& text, std::int32_t code, LineEvidence evidence) {
    switch (MeaningOf(code, evidence)) {
        case Meaning::kAccess:
            throw ACCESS_EXCEPTION("%s", text);
        case Meaning::kRange:
            throw OUT_OF_RANGE_EXCEPTION("%s", text);
        case Meaning::kArgument:
            throw INVALID_ARGUMENT_EXCEPTION("%s", text);
        case Meaning::kBusy:
            throw TIMEOUT_EXCEPTION("%s", text);
        case Meaning::kMemory:
            throw BAD_ALLOC_EXCEPTION("%s", text);
        case Meaning::kNonsense:
            throw RUNTIME_EXCEPTION("%s", text);
        case Meaning::kLine:
            break;
    }
    throw CLErrException(text.c_str(), __FILE__, __LINE__, code);
}

}  // namespace CLProtocol
