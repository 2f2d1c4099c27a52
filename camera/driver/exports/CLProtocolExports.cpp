/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The C functions of the driver: checked arguments, results in the caller's buffers, no exception gets out
 */

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstring>
#include <limits>
#include <new>

#include "CLProtocol/CLProtocolC.h"
#include "Clock.h"
#include "Driver.h"
#include "DriverError.h"
#include "base/Immortal.h"
#include "clser/ClSerial.h"

#ifdef _WIN32
#define MARLOW_EXPORT extern "C" __declspec(dllexport)
#else
#define MARLOW_EXPORT extern "C" __attribute__((visibility("default")))
#endif

using namespace CLProtocol;

namespace {

using marlow::Driver;
using marlow::DriverError;
using marlow::Duration;

constexpr CLINT64 kMaxAccess = CLINT64{64} << 20;  // bytes; more is a slip of the caller's

// Not destroyed: where a host never closes the library, thread T of it may be in a call while the process ends and runs
// the destructors of static objects. clpCloseLib leaves nothing in it that is not part of this place.
Driver& TheDriver() {
    struct Parts {
        marlow::SteadyClock clock;
        Driver driver{clock};
    };
    static base::Immortal<Parts> parts;
    return parts.Get().driver;
}

CLINT32 Fail(CLUINT32 cookie, CLINT32 code, const char* text) noexcept {
    try {
        TheDriver().Errors().Remember(cookie, code, text);
        TheDriver().Log().Log(CLP_LOG_DEBUG, "{} ({})", text, code);
    } catch (...) {
        return code;  // the text is lost, the code is not
    }
    return code;
}

// The one way in and out of every exported function.
template <typename Function>
CLINT32 Guarded(CLUINT32 cookie, Function function) noexcept {
    try {
        return function();
    } catch (const DriverError& error) {
        return Fail(cookie, error.Code(), error.what());
    } catch (const std::bad_alloc&) {
        return Fail(cookie, CL_ERR_OUT_OF_MEMORY, "Out of memory.");
    } catch (const std::exception& error) {
        return Fail(cookie, marlow::kInternalError, error.what());
    } catch (...) {
        return Fail(cookie, marlow::kInternalError, "Unknown exception.");
    }
}

template <typename Pointer>
Pointer& Checked(Pointer* pointer, const char* name) {
    if (!pointer)
        throw DriverError(CL_ERR_INVALID_PTR, fmt::format("The argument {} is a null pointer.", name));
    return *pointer;
}

Duration Milliseconds(CLUINT32 milliseconds) {
    return std::chrono::milliseconds(milliseconds);
}

std::size_t CheckedLength(const void* buffer, CLINT64 length) {
    if (length < 0 || length > kMaxAccess)
        throw DriverError(marlow::kBadRange, fmt::format("{} bytes can't be accessed at once.", length));
    if (length > 0 && !buffer)
        throw DriverError(CL_ERR_INVALID_PTR, "The argument buffer is a null pointer.");
    return static_cast<std::size_t>(length);
}

// A text for the caller, NUL included; too small a buffer gets the needed size only.
CLINT32 GiveText(const std::string& text, CLINT8* buffer, CLUINT32* size) {
    const auto needed = static_cast<CLUINT32>(text.size() + 1);
    const CLUINT32 have = Checked(size, "size");
    *size = needed;
    if (!buffer || have < needed)
        return CL_ERR_BUFFER_TOO_SMALL;
    std::memcpy(buffer, text.c_str(), needed);
    return CL_ERR_NO_ERR;
}

CLINT32 Probe(ISerial* serial, const CLINT8* templateOrDeviceId, CLINT8* deviceId, CLUINT32* size, CLUINT32* cookie,
              CLUINT32 timeoutMs) {
    Checked(cookie, "cookie") = 0;
    Checked(templateOrDeviceId, "template");
    Checked(size, "size");
    const auto found = TheDriver().Probe(Checked(serial, "serial"), templateOrDeviceId, Milliseconds(timeoutMs));
    const CLINT32 code = GiveText(found.deviceId, deviceId, size);
    if (code == CL_ERR_NO_ERR)
        *cookie = found.cookie;
    else
        TheDriver().Disconnect(found.cookie);
    return code;
}

CLINT32 GetDescription(ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId, CLINT8* buffer, CLUINT32* size,
                       CLUINT32 timeoutMs) {
    const auto connection = TheDriver().Get(cookie);
    const std::string id = &Checked(xmlId, "xmlId");
    const CLUINT32 have = Checked(size, "size");
    const auto needed = connection->DescriptionSize(Checked(serial, "serial"), id, Milliseconds(timeoutMs));
    *size = static_cast<CLUINT32>(needed);
    if (!buffer)
        return CL_ERR_NO_ERR;
    if (have < needed)
        return CL_ERR_BUFFER_TOO_SMALL;
    connection->FetchDescription(*serial, id, {reinterpret_cast<std::uint8_t*>(buffer), needed},
                                 Milliseconds(timeoutMs));
    return CL_ERR_NO_ERR;
}

CLINT32 DoneOrPending(bool isDone) {
    return isDone ? CLINT32{CL_ERR_NO_ERR} : CLINT32{CLP_PENDING_WRITE};
}

void CheckSize(CLINT64 length, std::size_t size) {
    if (length != static_cast<CLINT64>(size))
        throw DriverError(CLP_PARAM_SIZE, fmt::format("The parameter has {} bytes, not {}.", size, length));
}

template <typename Value>
CLINT32 GiveValue(Value value, CLINT8* buffer, CLINT64 length) {
    CheckSize(length, sizeof(Value));
    std::memcpy(&Checked(buffer, "buffer"), &value, sizeof(Value));
    return CL_ERR_NO_ERR;
}

template <typename Value>
Value TakeValue(const CLINT8* buffer, CLINT64 length) {
    CheckSize(length, sizeof(Value));
    Value value;
    std::memcpy(&value, &Checked(buffer, "buffer"), sizeof(Value));
    return value;
}

[[noreturn]] void FailUnknownParameter(CLP_PARAMS param) {
    throw DriverError(CLP_PARAM_NOT_SUPPORTED,
                      fmt::format("The driver has no parameter {}.", static_cast<CLINT32>(param)));
}

CLINT32 GetParam(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, CLINT8* buffer, CLINT64 length,
                 CLUINT32 timeoutMs) {
    Driver& driver = TheDriver();
    switch (param) {
        case CLP_LOG_LEVEL:
            return GiveValue(driver.Log().Level(), buffer, length);
        case CLP_LOG_CALLBACK:
            return GiveValue(driver.Log().Function(), buffer, length);
        case CLP_STOP_PROBE_DEVICE:
            return GiveValue(CLUINT32{0}, buffer, length);  // what it stopped has stopped
        case CLP_DEVICE_BAUDERATE:
            CheckSize(length, sizeof(CLUINT32));
            return GiveValue(driver.Get(cookie)->Rate(Checked(serial, "serial"), Milliseconds(timeoutMs)), buffer,
                             length);
        case CLP_DEVICE_SUPPORTED_BAUDERATES:
            CheckSize(length, sizeof(CLUINT32));
            return GiveValue(driver.Get(cookie)->SupportedRates(Checked(serial, "serial"), Milliseconds(timeoutMs)),
                             buffer, length);
    }
    FailUnknownParameter(param);
}

CLINT32 SetParam(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, const CLINT8* buffer, CLINT64 length,
                 CLUINT32 timeoutMs) {
    Driver& driver = TheDriver();
    switch (param) {
        case CLP_LOG_LEVEL:
            driver.Log().SetLevel(TakeValue<CLINT32>(buffer, length));
            return CL_ERR_NO_ERR;
        case CLP_LOG_CALLBACK:
            driver.Log().Set(TakeValue<CLP_LOGGER>(buffer, length));
            return CL_ERR_NO_ERR;
        case CLP_STOP_PROBE_DEVICE:
            if (TakeValue<CLUINT32>(buffer, length) != 0)
                driver.StopProbing();
            return CL_ERR_NO_ERR;
        case CLP_DEVICE_BAUDERATE: {
            const auto flag = TakeValue<CLUINT32>(buffer, length);
            driver.Get(cookie)->SetRate(Checked(serial, "serial"), flag, Milliseconds(timeoutMs));
            return CL_ERR_NO_ERR;
        }
        case CLP_DEVICE_SUPPORTED_BAUDERATES:
            throw DriverError(CLP_PARAM_READ_ONLY, "The supported baud rates can't be written.");
    }
    FailUnknownParameter(param);
}

}  // namespace

MARLOW_EXPORT CLINT32 CLP_CC clpInitLib(CLP_LOGGER logger, CLINT32 logLevel) noexcept {
    return Guarded(0, [&] {
        TheDriver().Log().SetLevel(logLevel);
        TheDriver().Log().Set(logger);
        return CL_ERR_NO_ERR;
    });
}

MARLOW_EXPORT CLINT32 CLP_CC clpCloseLib() noexcept {
    return Guarded(0, [] {
        TheDriver().Close();
        return CL_ERR_NO_ERR;
    });
}

MARLOW_EXPORT CLINT32 CLP_CC clpGetCLProtocolVersion(CLUINT32* major, CLUINT32* minor) noexcept {
    return Guarded(0, [&] {
        Checked(major, "major") = CLP_VERSION_MAJOR;
        Checked(minor, "minor") = CLP_VERSION_MINOR;
        return CL_ERR_NO_ERR;
    });
}

MARLOW_EXPORT CLINT32 CLP_CC clpGetShortDeviceIDTemplates(CLINT8* templates, CLUINT32* size) noexcept {
    return Guarded(0, [&] { return GiveText(marlow::kManufacturer, templates, size); });
}

MARLOW_EXPORT CLINT32 CLP_CC clpProbeDevice(ISerial* serial, const CLINT8* templateOrDeviceId, CLINT8* deviceId,
                                            CLUINT32* size, CLUINT32* cookie, CLUINT32 timeoutMs) noexcept {
    return Guarded(0, [&] { return Probe(serial, templateOrDeviceId, deviceId, size, cookie, timeoutMs); });
}

MARLOW_EXPORT CLINT32 CLP_CC clpGetXMLIDs(ISerial* serial, CLUINT32 cookie, CLINT8* ids, CLUINT32* size,
                                          CLUINT32 timeoutMs) noexcept {
    return Guarded(cookie, [&] {
        const auto connection = TheDriver().Get(cookie);
        Checked(size, "size");
        const auto found = connection->XmlIds(Checked(serial, "serial"), Milliseconds(timeoutMs));
        return GiveText(fmt::format("{}", fmt::join(found, "\t")), ids, size);
    });
}

MARLOW_EXPORT CLINT32 CLP_CC clpGetXMLDescription(ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId, CLINT8* buffer,
                                                  CLUINT32* size, CLUINT32 timeoutMs) noexcept {
    return Guarded(cookie, [&] { return GetDescription(serial, cookie, xmlId, buffer, size, timeoutMs); });
}

MARLOW_EXPORT CLINT32 CLP_CC clpGetXMLDigest(ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId, CLINT8* digest,
                                             CLUINT32* size, CLUINT32 timeoutMs) noexcept {
    return Guarded(cookie, [&] {
        const auto connection = TheDriver().Get(cookie);
        Checked(size, "size");
        const std::string id = &Checked(xmlId, "xmlId");
        return GiveText(connection->DescriptionDigest(Checked(serial, "serial"), id, Milliseconds(timeoutMs)), digest,
                        size);
    });
}

MARLOW_EXPORT CLINT32 CLP_CC clpReadRegister(ISerial* serial, CLUINT32 cookie, CLINT64 address, CLINT8* buffer,
                                             CLINT64 length, CLUINT32 timeoutMs) noexcept {
    return Guarded(cookie, [&] {
        const auto connection = TheDriver().Get(cookie);
        const std::size_t size = CheckedLength(buffer, length);
        connection->Read(Checked(serial, "serial"), static_cast<std::uint64_t>(address),
                         {reinterpret_cast<std::uint8_t*>(buffer), size}, Milliseconds(timeoutMs));
        return CL_ERR_NO_ERR;
    });
}

MARLOW_EXPORT CLINT32 CLP_CC clpWriteRegister(ISerial* serial, CLUINT32 cookie, CLINT64 address, const CLINT8* buffer,
                                              CLINT64 length, CLUINT32 timeoutMs) noexcept {
    return Guarded(cookie, [&] {
        const auto connection = TheDriver().Get(cookie);
        const std::size_t size = CheckedLength(buffer, length);
        const bool isDone =
            connection->Write(Checked(serial, "serial"), static_cast<std::uint64_t>(address),
                              {reinterpret_cast<const std::uint8_t*>(buffer), size}, Milliseconds(timeoutMs));
        return DoneOrPending(isDone);
    });
}

MARLOW_EXPORT CLINT32 CLP_CC clpContinueWriteRegister(ISerial* serial, CLUINT32 cookie, BOOL8 continueWaiting,
                                                      CLUINT32 timeoutMs) noexcept {
    return Guarded(cookie, [&] {
        const bool isDone = TheDriver().Get(cookie)->ContinueWrite(Checked(serial, "serial"), continueWaiting != 0,
                                                                   Milliseconds(timeoutMs));
        return DoneOrPending(isDone);
    });
}

// A failure here leaves the texts of earlier failures as they are: it is what asks for them.
MARLOW_EXPORT CLINT32 CLP_CC clpGetErrorText(CLINT32 code, CLINT8* text, CLUINT32* size, CLUINT32 cookie) noexcept {
    try {
        Checked(size, "size");
        return GiveText(TheDriver().ErrorText(code, cookie), text, size);
    } catch (const DriverError& error) {
        return error.Code();
    } catch (...) {
        return marlow::kInternalError;
    }
}

MARLOW_EXPORT CLINT32 CLP_CC clpDisconnect(CLUINT32 cookie) noexcept {
    return Guarded(cookie, [&] {
        TheDriver().Disconnect(cookie);
        return CL_ERR_NO_ERR;
    });
}

MARLOW_EXPORT CLINT32 CLP_CC clpGetParam(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, CLINT8* buffer,
                                         CLINT64 length, CLUINT32 timeoutMs) noexcept {
    return Guarded(cookie, [&] { return GetParam(serial, param, cookie, buffer, length, timeoutMs); });
}

MARLOW_EXPORT CLINT32 CLP_CC clpSetParam(ISerial* serial, CLP_PARAMS param, CLUINT32 cookie, const CLINT8* buffer,
                                         CLINT64 length, CLUINT32 timeoutMs) noexcept {
    return Guarded(cookie, [&] { return SetParam(serial, param, cookie, buffer, length, timeoutMs); });
}

MARLOW_EXPORT CLINT32 CLP_CC clpIsParamSupported(CLP_PARAMS param) noexcept {
    switch (param) {
        case CLP_LOG_LEVEL:
        case CLP_LOG_CALLBACK:
        case CLP_STOP_PROBE_DEVICE:
        case CLP_DEVICE_BAUDERATE:
        case CLP_DEVICE_SUPPORTED_BAUDERATES:
            return CL_ERR_NO_ERR;
    }
    return CLP_PARAM_NOT_SUPPORTED;
}

// The driver enables no events on a camera, so there never are any.
MARLOW_EXPORT CLINT32 CLP_CC clpGetEventData(CLUINT32 cookie, CLINT8*, CLUINT32* size) noexcept {
    return Guarded(cookie, [&] {
        TheDriver().Get(cookie);
        Checked(size, "size") = 0;
        return CL_ERR_NO_ERR;
    });
}
