/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One loaded CLProtocol driver
 */

#include "DriverLibrary.h"

#include <algorithm>

#include "ErrorCodes.h"
#include "ForeignCall.h"
#include "ModuleLog.h"
#include "ShortForm.h"
#include "Texts.h"
#include "base/Text.h"
#include "clser/ClSerial.h"

namespace CLProtocol {

namespace {

constexpr TextRoom kTextRoom{4096, 1u << 20};
constexpr std::size_t kFirstXmlSize = 1u << 20;  // enough for nearly all, so that a description is asked for once
constexpr std::size_t kMaxXmlSize = 64u << 20;
constexpr int kMaxXmlAttempts = 3;
constexpr CLUINT32 kOldestMinor = 1;

}  // namespace

template <class Function, class... Arguments>
auto DriverLibrary::Call(const char* name, Function function, Arguments... arguments) const {
    return CallForeign(m_path, name, function, arguments...);
}

/**
 * \class DriverLibrary
 * \brief A camera maker's library with the functions of CLProtocol 1.1 or 1.2
 *
 * Nothing that it answers is trusted: texts end within their buffers, sizes are bounded, exceptions are stopped.
 * Functions that ask the driver for something return its result; negative is an error.
 *
 * \context Any thread; calls about one cookie come one after the other.
 */

/**
 * \brief Load a driver and initialise it
 * \throw os::LibraryError It can't be loaded or lacks a function
 * \throw GenICam::RuntimeException It has another version, or it failed
 */
DriverLibrary::DriverLibrary(const std::string& path) : m_path(path) {
    {
        const ForeignScope scope(path, "(loading)");
        m_library = os::Library(path);
    }
    LookUp();
    CheckVersion();
    Initialize();
}

DriverLibrary::~DriverLibrary() {
    try {
        Call("clpCloseLib", m_closeLib);
    } catch (const std::exception& error) {
        Log(CLP_LOG_ERROR, "%s", ReasonOf(error));
    }
}

void DriverLibrary::LookUp() {
    const auto get = [this](auto& function, const char* name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(m_library.Symbol(name));
    };
    get(m_initLib, "clpInitLib");
    get(m_closeLib, "clpCloseLib");
    get(m_getVersion, "clpGetCLProtocolVersion");
    get(m_getTemplates, "clpGetShortDeviceIDTemplates");
    get(m_probeDevice, "clpProbeDevice");
    get(m_getXmlIds, "clpGetXMLIDs");
    get(m_getXml, "clpGetXMLDescription");
    get(m_readRegister, "clpReadRegister");
    get(m_writeRegister, "clpWriteRegister");
    get(m_continueWrite, "clpContinueWriteRegister");
    get(m_getErrorText, "clpGetErrorText");
    get(m_disconnect, "clpDisconnect");
    get(m_getParam, "clpGetParam");
    get(m_setParam, "clpSetParam");
    get(m_isParamSupported, "clpIsParamSupported");
    m_getXmlDigest = reinterpret_cast<PclpGetXMLDigest>(m_library.FindSymbol("clpGetXMLDigest"));
}

void DriverLibrary::CheckSuccess(const char* function, CLINT32 result) const {
    if (result < 0)
        throw RUNTIME_EXCEPTION("Function '%s' of '%s' failed: %s (%d)", function, m_path,
                                ErrorText(result, 0).value_or(StandardErrorText(result)), result);
}

void DriverLibrary::CheckVersion() {
    CheckSuccess("clpGetCLProtocolVersion", Call("clpGetCLProtocolVersion", m_getVersion, &m_major, &m_minor));
    if (m_major != CLP_VERSION_MAJOR || m_minor < kOldestMinor)
        throw RUNTIME_EXCEPTION("'%s' is of CLProtocol version %u.%u; %u.%u to %u.%u is needed", m_path, m_major,
                                m_minor, CLP_VERSION_MAJOR, kOldestMinor, CLP_VERSION_MAJOR, CLP_VERSION_MINOR);
}

void DriverLibrary::Initialize() {
    CheckSuccess("clpInitLib", Call("clpInitLib", m_initLib, CLP_LOGGER(&LogFromDriver), GetLogLevel()));
}

/// Version of CLProtocol that the driver keeps to.
std::string DriverLibrary::Version() const {
    return std::to_string(m_major) + "." + std::to_string(m_minor);
}

/**
 * \brief The driver's DeviceID templates, in their short form
 * \throw GenICam::RuntimeException The driver failed
 */
std::vector<std::string> DriverLibrary::ShortTemplates() const {
    const ForeignText templates = AskForText(
        [this](char* text, std::uint32_t* size) {
            return Call("clpGetShortDeviceIDTemplates", m_getTemplates, text, size);
        },
        kTextRoom);
    CheckSuccess("clpGetShortDeviceIDTemplates", templates.result);
    std::vector<std::string> result = base::SplitWithoutEmpty(templates.text, '\t');
    std::erase_if(result, [](const std::string& text) { return HasControlCharacters(text); });
    for (std::string& text : result)
        text = std::string(ShortForm(text));
    return result;
}

/**
 * \brief Look for a camera and connect to it
 * \param[in] serial The line, at 9600 baud
 * \param[in] templateOrDeviceId What to look for, in its short form
 * \param[out] deviceId Short DeviceID of the camera found; empty when there is none
 * \param[out] cookie What the driver calls the connection; 0 when there is none
 */
CLINT32 DriverLibrary::Probe(ISerial& serial, const std::string& templateOrDeviceId, std::string& deviceId,
                             CLUINT32& cookie, CLUINT32 timeoutMs) const {
    cookie = 0;
    ForeignText found = AskForText(
        [&](char* text, std::uint32_t* size) {
            return Call("clpProbeDevice", m_probeDevice, &serial, templateOrDeviceId.c_str(), text, size, &cookie,
                        timeoutMs);
        },
        kTextRoom);
    deviceId = ShortForm(WithoutControlCharacters(found.text));
    return found.result;
}

CLINT32 DriverLibrary::Disconnect(CLUINT32 cookie) const {
    return Call("clpDisconnect", m_disconnect, cookie);
}

/// The XML IDs that the camera offers, separated by tabs.
CLINT32 DriverLibrary::GetXmlIds(ISerial& serial, CLUINT32 cookie, std::string& ids, CLUINT32 timeoutMs) const {
    ForeignText text = AskForText(
        [&](char* buffer, std::uint32_t* size) {
            return Call("clpGetXMLIDs", m_getXmlIds, &serial, cookie, buffer, size, timeoutMs);
        },
        kTextRoom);
    ids = std::move(text.text);
    return text.result;
}

/**
 * \brief Fetch a description
 * \param[out] xml The bytes as the camera has them: a text or an archive with one
 * \return The driver's result; -10001 when the description is longer than 64 MiB or its size makes no sense
 */
CLINT32 DriverLibrary::GetXml(ISerial& serial, CLUINT32 cookie, const std::string& xmlId, std::string& xml,
                              CLUINT32 timeoutMs) const {
    std::size_t capacity = kFirstXmlSize;
    for (int attempt = 0; attempt < kMaxXmlAttempts && capacity <= kMaxXmlSize; ++attempt) {
        xml.assign(capacity, '\0');
        auto size = static_cast<CLUINT32>(capacity);
        const CLINT32 result =
            Call("clpGetXMLDescription", m_getXml, &serial, cookie, xmlId.c_str(), xml.data(), &size, timeoutMs);
        xml.resize(result < 0 ? 0 : std::min<std::size_t>(size, capacity));
        if (result != CL_ERR_BUFFER_TOO_SMALL)
            return result;
        if (size <= capacity)
            break;
        capacity = size;
    }
    return CL_ERR_BUFFER_TOO_SMALL;
}

/**
 * \brief What the camera says now about the bytes of a description, without fetching it
 * \param[out] digest Another one whenever the bytes are others; empty when the camera does not tell
 * \return The driver's result; -10099 when it has no such function
 */
CLINT32 DriverLibrary::GetXmlDigest(ISerial& serial, CLUINT32 cookie, const std::string& xmlId, std::string& digest,
                                    CLUINT32 timeoutMs) const {
    if (m_getXmlDigest == nullptr)
        return CL_ERR_FUNCTION_NOT_FOUND;
    ForeignText text = AskForText(
        [&](char* buffer, std::uint32_t* size) {
            return Call("clpGetXMLDigest", m_getXmlDigest, &serial, cookie, xmlId.c_str(), buffer, size, timeoutMs);
        },
        kTextRoom);
    digest = std::move(text.text);
    return text.result;
}

/// The bytes of a description, without fetching it; 0 when the driver can't say it.
std::size_t DriverLibrary::GetXmlSize(ISerial& serial, CLUINT32 cookie, const std::string& xmlId,
                                      CLUINT32 timeoutMs) const {
    char none = 0;
    CLUINT32 size = 0;
    const CLINT32 result =
        Call("clpGetXMLDescription", m_getXml, &serial, cookie, xmlId.c_str(), &none, &size, timeoutMs);
    return result == CL_ERR_BUFFER_TOO_SMALL && size <= kMaxXmlSize ? size : 0;
}

CLINT32 DriverLibrary::Read(ISerial& serial, CLUINT32 cookie, CLINT64 address, char* buffer, CLINT64 length,
                            CLUINT32 timeoutMs) const {
    return Call("clpReadRegister", m_readRegister, &serial, cookie, address, buffer, length, timeoutMs);
}

CLINT32 DriverLibrary::Write(ISerial& serial, CLUINT32 cookie, CLINT64 address, const char* buffer, CLINT64 length,
                             CLUINT32 timeoutMs) const {
    return Call("clpWriteRegister", m_writeRegister, &serial, cookie, address, buffer, length, timeoutMs);
}

CLINT32 DriverLibrary::ContinueWrite(ISerial& serial, CLUINT32 cookie, bool continueWaiting, CLUINT32 timeoutMs) const {
    return Call("clpContinueWriteRegister", m_continueWrite, &serial, cookie,
                static_cast<BOOL8>(continueWaiting ? 1 : 0), timeoutMs);
}

bool DriverLibrary::IsParameterSupported(CLP_PARAMS parameter) const {
    return Call("clpIsParamSupported", m_isParamSupported, parameter) >= 0;
}

CLINT32 DriverLibrary::GetParameter(ISerial& serial, CLP_PARAMS parameter, CLUINT32 cookie, CLUINT32& value,
                                    CLUINT32 timeoutMs) const {
    return Call("clpGetParam", m_getParam, &serial, parameter, cookie, reinterpret_cast<CLINT8*>(&value),
                static_cast<CLINT64>(sizeof value), timeoutMs);
}

CLINT32 DriverLibrary::SetParameter(ISerial& serial, CLP_PARAMS parameter, CLUINT32 cookie, CLUINT32 value,
                                    CLUINT32 timeoutMs) const {
    return Call("clpSetParam", m_setParam, &serial, parameter, cookie, reinterpret_cast<const CLINT8*>(&value),
                static_cast<CLINT64>(sizeof value), timeoutMs);
}

/// The driver's own text for an error code; nothing when it has none. Never throws but for lack of memory.
std::optional<std::string> DriverLibrary::ErrorText(CLINT32 code, CLUINT32 cookie) const {
    try {
        const ForeignText text = AskForText(
            [&](char* buffer, std::uint32_t* size) {
                return Call("clpGetErrorText", m_getErrorText, code, buffer, size, cookie);
            },
            kTextRoom);
        if (text.result >= 0 && !text.text.empty())
            return WithoutControlCharacters(text.text);
    } catch (const GenICam::GenericException& error) {
        Log(CLP_LOG_WARN, "%s", error.GetDescription());
    }
    return std::nullopt;
}

}  // namespace CLProtocol
