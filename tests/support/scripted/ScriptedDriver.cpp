/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A CLProtocol driver that does what a test's script says
 *
 * Unlike what a maker ships, its functions let exceptions through when a script throws: hosts must stand that.
 */

#include <cstring>

#include "clser/ClSerial.h"
#include "scripted/DriverScript.h"

#ifdef _WIN32
#define SCRIPTED_EXPORT extern "C" __declspec(dllexport)
#else
#define SCRIPTED_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

using CLProtocol::ISerial;
using scripted::DriverScript;

constexpr std::uint32_t kAnswerSize = 128;
constexpr std::uint32_t kAnswerTimeoutMs = 2;  // the scripted port answers before the question returns

DriverScript& Script() {
    static DriverScript script;
    return script;
}

// Records the call and copies the hook, so that the hook runs without the lock.
template <class Hook>
Hook Enter(const char* function, Hook DriverScript::*hook) {
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    script.calls.emplace_back(function);
    return script.*hook;
}

void Record(const char* function) {
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    script.calls.emplace_back(function);
}

CLINT32 CopyText(const std::string& text, CLINT8* buffer, CLUINT32* size) {
    const CLUINT32 capacity = *size;
    *size = static_cast<CLUINT32>(text.size() + 1);
    if (buffer == nullptr)
        return CL_ERR_NO_ERR;
    if (capacity < *size)
        return CL_ERR_BUFFER_TOO_SMALL;
    std::memcpy(buffer, text.c_str(), *size);
    return CL_ERR_NO_ERR;
}

// Who is on the line: the result is 0 and the camera's DeviceID, or an error.
CLINT32 AskLine(ISerial* serial, std::string& camera) {
    DriverScript& script = Script();
    {
        const std::lock_guard lock(script.mutex);
        camera = script.deviceId;
        if (!script.asksLine)
            return CL_ERR_NO_ERR;
    }
    char question = '?';
    CLUINT32 size = 1;
    if (const CLINT32 result = serial->clSerialWrite(&question, &size, kAnswerTimeoutMs); result < 0)
        return result;
    char answer[kAnswerSize + 1] = {};
    size = kAnswerSize;
    const CLINT32 result = serial->clSerialRead(answer, &size, kAnswerTimeoutMs);
    camera = answer;
    const std::lock_guard lock(script.mutex);
    return result == CL_ERR_TIMEOUT ? script.noAnswer : result;
}

bool Matches(const std::string& camera, const std::string& start) {
    return camera.starts_with(start) && (camera.size() == start.size() || camera[start.size()] == '#');
}

// Whether the cookie is valid and its camera is still there.
CLINT32 CheckCamera(ISerial* serial, CLUINT32 cookie) {
    std::string camera;
    const CLINT32 result = AskLine(serial, camera);
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    const auto found = script.cookies.find(cookie);
    if (found == script.cookies.end())
        return CLProtocol::CLP_INVALID_COOKIE;
    if (result != CL_ERR_NO_ERR)
        return result;
    return found->second == camera ? CL_ERR_NO_ERR : script.noAnswer;
}

}  // namespace

SCRIPTED_EXPORT void* scriptedDriver() {
    return &Script();
}

SCRIPTED_EXPORT CLINT32 clpInitLib(CLProtocol::CLP_LOGGER logger, CLINT32 logLevel) {
    if (const auto hook = Enter("clpInitLib", &DriverScript::onInitLib))
        return hook(logLevel);
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    script.logger = logger;
    script.logLevel = logLevel;
    return CL_ERR_NO_ERR;
}

SCRIPTED_EXPORT CLINT32 clpCloseLib() {
    Record("clpCloseLib");
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    script.logger = nullptr;
    return CL_ERR_NO_ERR;
}

SCRIPTED_EXPORT CLINT32 clpGetCLProtocolVersion(CLUINT32* major, CLUINT32* minor) {
    if (const auto hook = Enter("clpGetCLProtocolVersion", &DriverScript::onGetVersion))
        return hook(major, minor);
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    *major = script.versionMajor;
    *minor = script.versionMinor;
    return CL_ERR_NO_ERR;
}

SCRIPTED_EXPORT CLINT32 clpGetShortDeviceIDTemplates(CLINT8* templates, CLUINT32* size) {
    if (const auto hook = Enter("clpGetShortDeviceIDTemplates", &DriverScript::onGetTemplates))
        return hook(templates, size);
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    return CopyText(script.templates, templates, size);
}

SCRIPTED_EXPORT CLINT32 clpProbeDevice(ISerial* serial, const CLINT8* templateOrDeviceId, CLINT8* deviceId,
                                       CLUINT32* size, CLUINT32* cookie, CLUINT32 timeoutMs) {
    const auto hook = Enter("clpProbeDevice", &DriverScript::onProbe);
    DriverScript& script = Script();
    {
        const std::lock_guard lock(script.mutex);
        script.probedFor = templateOrDeviceId;
        script.lastTimeout = timeoutMs;
    }
    if (hook)
        return hook(serial, templateOrDeviceId, deviceId, size, cookie, timeoutMs);
    std::string camera;
    if (const CLINT32 result = AskLine(serial, camera); result != CL_ERR_NO_ERR)
        return result;
    if (!Matches(camera, templateOrDeviceId)) {
        *cookie = 0;
        const bool isTemplate = std::strchr(templateOrDeviceId, '#') == nullptr;
        return isTemplate ? CopyText("", deviceId, size) : static_cast<CLINT32>(CLProtocol::CLP_NO_DEVICE_FOUND);
    }
    if (const CLINT32 result = CopyText(camera, deviceId, size); result != CL_ERR_NO_ERR)
        return result;
    static CLUINT32 lastCookie = 0;
    const std::lock_guard lock(script.mutex);
    *cookie = ++lastCookie;
    script.cookies[*cookie] = camera;
    return CL_ERR_NO_ERR;
}

SCRIPTED_EXPORT CLINT32 clpGetXMLIDs(ISerial* serial, CLUINT32 cookie, CLINT8* ids, CLUINT32* size,
                                     CLUINT32 /*timeoutMs*/) {
    if (const auto hook = Enter("clpGetXMLIDs", &DriverScript::onGetXmlIds))
        return hook(ids, size);
    if (const CLINT32 result = CheckCamera(serial, cookie); result != CL_ERR_NO_ERR)
        return result;
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    return CopyText(script.xmlIds, ids, size);
}

SCRIPTED_EXPORT CLINT32 clpGetXMLDescription(ISerial* serial, CLUINT32 cookie, const CLINT8* xmlId, CLINT8* buffer,
                                             CLUINT32* size, CLUINT32 /*timeoutMs*/) {
    if (const auto hook = Enter("clpGetXMLDescription", &DriverScript::onGetXml))
        return hook(xmlId, buffer, size);
    if (const CLINT32 result = CheckCamera(serial, cookie); result != CL_ERR_NO_ERR)
        return result;
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    const auto found = script.xml.find(xmlId);
    if (found == script.xml.end())
        return CLProtocol::CLP_NO_XMLDESCRIPTION_FOUND;
    return CopyText(found->second, buffer, size);
}

SCRIPTED_EXPORT CLINT32 clpGetXMLDigest(ISerial* /*serial*/, CLUINT32 /*cookie*/, const CLINT8* xmlId, CLINT8* digest,
                                        CLUINT32* size, CLUINT32 /*timeoutMs*/) {
    Record("clpGetXMLDigest");
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    const auto found = script.digests.find(xmlId);
    return found != script.digests.end() ? CopyText(found->second, digest, size)
                                         : static_cast<CLINT32>(CL_ERR_FUNCTION_NOT_FOUND);
}

#ifndef SCRIPTED_LACKS_READ_REGISTER
SCRIPTED_EXPORT CLINT32 clpReadRegister(ISerial* serial, CLUINT32 cookie, CLINT64 address, CLINT8* buffer,
                                        CLINT64 length, CLUINT32 timeoutMs) {
    const auto hook = Enter("clpReadRegister", &DriverScript::onRead);
    DriverScript& script = Script();
    {
        const std::lock_guard lock(script.mutex);
        script.lastTimeout = timeoutMs;
    }
    if (hook)
        return hook(serial, address, buffer, length, timeoutMs);
    if (const CLINT32 result = CheckCamera(serial, cookie); result != CL_ERR_NO_ERR)
        return result;
    const std::string bytes = script.GetRegister(address, static_cast<std::size_t>(length));
    std::memcpy(buffer, bytes.data(), bytes.size());
    return CL_ERR_NO_ERR;
}
#endif

SCRIPTED_EXPORT CLINT32 clpWriteRegister(ISerial* serial, CLUINT32 cookie, CLINT64 address, const CLINT8* buffer,
                                         CLINT64 length, CLUINT32 timeoutMs) {
    const auto hook = Enter("clpWriteRegister", &DriverScript::onWrite);
    DriverScript& script = Script();
    {
        const std::lock_guard lock(script.mutex);
        script.lastTimeout = timeoutMs;
    }
    if (hook)
        return hook(serial, address, buffer, length, timeoutMs);
    if (const CLINT32 result = CheckCamera(serial, cookie); result != CL_ERR_NO_ERR)
        return result;
    script.SetRegister(address, std::string(buffer, static_cast<std::size_t>(length)));
    const std::lock_guard lock(script.mutex);
    return script.pendingWrites > 0 ? static_cast<CLINT32>(CLProtocol::CLP_PENDING_WRITE) : script.writeResult;
}

SCRIPTED_EXPORT CLINT32 clpContinueWriteRegister(ISerial* /*serial*/, CLUINT32 /*cookie*/, BOOL8 continueWaiting,
                                                 CLUINT32 /*timeoutMs*/) {
    if (const auto hook = Enter("clpContinueWriteRegister", &DriverScript::onContinueWrite))
        return hook(continueWaiting != 0);
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    return --script.pendingWrites > 0 ? static_cast<CLINT32>(CLProtocol::CLP_PENDING_WRITE) : script.writeResult;
}

SCRIPTED_EXPORT CLINT32 clpGetErrorText(CLINT32 code, CLINT8* text, CLUINT32* size, CLUINT32 cookie) {
    if (const auto hook = Enter("clpGetErrorText", &DriverScript::onGetErrorText))
        return hook(code, text, size, cookie);
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    const auto found = script.errorTexts.find(code);
    return found != script.errorTexts.end() ? CopyText(found->second, text, size)
                                            : static_cast<CLINT32>(CL_ERR_ERROR_NOT_FOUND);
}

SCRIPTED_EXPORT CLINT32 clpDisconnect(CLUINT32 cookie) {
    const auto hook = Enter("clpDisconnect", &DriverScript::onDisconnect);
    DriverScript& script = Script();
    {
        const std::lock_guard lock(script.mutex);
        if (script.cookies.erase(cookie) == 0)
            return CLProtocol::CLP_INVALID_COOKIE;
    }
    return hook ? hook(cookie) : static_cast<CLINT32>(CL_ERR_NO_ERR);
}

SCRIPTED_EXPORT CLINT32 clpGetParam(ISerial* /*serial*/, CLProtocol::CLP_PARAMS param, CLUINT32 /*cookie*/,
                                    CLINT8* buffer, CLINT64 length, CLUINT32 /*timeoutMs*/) {
    Record("clpGetParam");
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    if (script.supportedRates == 0 || param >= 0)
        return CLProtocol::CLP_PARAM_NOT_SUPPORTED;
    if (length != sizeof script.rate)
        return CLProtocol::CLP_PARAM_SIZE;
    const bool isRate = param == CLProtocol::CLP_DEVICE_BAUDERATE;
    std::memcpy(buffer, isRate ? &script.rate : &script.supportedRates, sizeof script.rate);
    return CL_ERR_NO_ERR;
}

SCRIPTED_EXPORT CLINT32 clpSetParam(ISerial* /*serial*/, CLProtocol::CLP_PARAMS param, CLUINT32 /*cookie*/,
                                    const CLINT8* buffer, CLINT64 length, CLUINT32 /*timeoutMs*/) {
    const auto hook = Enter("clpSetParam", &DriverScript::onSetRate);
    if (param != CLProtocol::CLP_DEVICE_BAUDERATE)
        return CLProtocol::CLP_PARAM_READ_ONLY;
    CLUINT32 rate = 0;
    if (length != sizeof rate)
        return CLProtocol::CLP_PARAM_SIZE;
    std::memcpy(&rate, buffer, sizeof rate);
    if (const CLINT32 result = hook ? hook(rate) : 0; result != CL_ERR_NO_ERR)
        return result;
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    script.rate = rate;
    script.rates.push_back(rate);
    return CL_ERR_NO_ERR;
}

SCRIPTED_EXPORT CLINT32 clpIsParamSupported(CLProtocol::CLP_PARAMS param) {
    DriverScript& script = Script();
    const std::lock_guard lock(script.mutex);
    return param < 0 && script.supportedRates != 0 ? script.supportedRemark
                                                   : static_cast<CLINT32>(CLProtocol::CLP_PARAM_NOT_SUPPORTED);
}

SCRIPTED_EXPORT CLINT32 clpGetEventData(CLUINT32 /*cookie*/, CLINT8* /*buffer*/, CLUINT32* size) {
    *size = 0;
    return CL_ERR_NO_ERR;
}
