/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One loaded CLProtocol driver
 */
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CLProtocol/CLProtocolC.h"
#include "os/Library.h"

namespace CLProtocol {

class DriverLibrary {
public:
    explicit DriverLibrary(const std::string& path);
    ~DriverLibrary();
    DriverLibrary(const DriverLibrary&) = delete;
    DriverLibrary& operator=(const DriverLibrary&) = delete;

    const std::string& Path() const noexcept { return m_path; }
    std::string Version() const;
    std::vector<std::string> ShortTemplates() const;

    CLINT32 Probe(ISerial& serial, const std::string& templateOrDeviceId, std::string& deviceId, CLUINT32& cookie,
                  CLUINT32 timeoutMs) const;
    CLINT32 Disconnect(CLUINT32 cookie) const;
    CLINT32 GetXmlIds(ISerial& serial, CLUINT32 cookie, std::string& ids, CLUINT32 timeoutMs) const;
    CLINT32 GetXml(ISerial& serial, CLUINT32 cookie, const std::string& xmlId, std::string& xml,
                   CLUINT32 timeoutMs) const;
    CLINT32 GetXmlDigest(ISerial& serial, CLUINT32 cookie, const std::string& xmlId, std::string& digest,
                         CLUINT32 timeoutMs) const;
    std::size_t GetXmlSize(ISerial& serial, CLUINT32 cookie, const std::string& xmlId, CLUINT32 timeoutMs) const;
    CLINT32 Read(ISerial& serial, CLUINT32 cookie, CLINT64 address, char* buffer, CLINT64 length,
                 CLUINT32 timeoutMs) const;
    CLINT32 Write(ISerial& serial, CLUINT32 cookie, CLINT64 address, const char* buffer, CLINT64 length,
                  CLUINT32 timeoutMs) const;
    CLINT32 ContinueWrite(ISerial& serial, CLUINT32 cookie, bool continueWaiting, CLUINT32 timeoutMs) const;
    bool IsParameterSupported(CLP_PARAMS parameter) const;
    CLINT32 GetParameter(ISerial& serial, CLP_PARAMS parameter, CLUINT32 cookie, CLUINT32& value,
                         CLUINT32 timeoutMs) const;
    CLINT32 SetParameter(ISerial& serial, CLP_PARAMS parameter, CLUINT32 cookie, CLUINT32 value,
                         CLUINT32 timeoutMs) const;
    std::optional<std::string> ErrorText(CLINT32 code, CLUINT32 cookie) const;

private:
    void LookUp();
    void CheckVersion();
    void Initialize();
    void CheckSuccess(const char* function, CLINT32 result) const;

    template <class Function, class... Arguments>
    auto Call(const char* name, Function function, Arguments... arguments) const;

    const std::string m_path;
    os::Library m_library;
    CLUINT32 m_major = 0;
    CLUINT32 m_minor = 0;

    PclpInitLib m_initLib = nullptr;
    PclpCloseLib m_closeLib = nullptr;
    PclpGetCLProtocolVersion m_getVersion = nullptr;
    PclpGetShortDeviceIDTemplates m_getTemplates = nullptr;
    PclpProbeDevice m_probeDevice = nullptr;
    PclpGetXMLIDs m_getXmlIds = nullptr;
    PclpGetXMLDescription m_getXml = nullptr;
    PclpReadRegister m_readRegister = nullptr;
    PclpWriteRegister m_writeRegister = nullptr;
    PclpContinueWriteRegister m_continueWrite = nullptr;
    PclpGetErrorText m_getErrorText = nullptr;
    PclpDisconnect m_disconnect = nullptr;
    PclpGetParam m_getParam = nullptr;
    PclpSetParam m_setParam = nullptr;
    PclpIsParamSupported m_isParamSupported = nullptr;
    PclpGetXMLDigest m_getXmlDigest = nullptr;  // null in most drivers
};

}  // namespace CLProtocol
