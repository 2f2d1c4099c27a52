/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A connection to one camera: an open port, a driver, and the driver's cookie
 */
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "DriverLibrary.h"
#include "PortLine.h"
#include "SerialConnection.h"
#include "SerialPorts.h"

namespace CLProtocol {

class Session {
public:
    Session(const SerialPort& port, std::shared_ptr<const DriverLibrary> driver);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    std::string Probe(const std::string& templateOrDeviceId, CLUINT32 timeoutMs);
    void Disconnect();

    void Read(CLINT64 address, std::vector<char>& bytes, CLUINT32 timeoutMs);
    void Write(CLINT64 address, const std::vector<char>& bytes, CLUINT32 timeoutMs);
    std::vector<std::string> GetXmlIds(CLUINT32 timeoutMs, std::string& whyNone);
    std::string GetXml(const std::string& xmlId, CLUINT32 timeoutMs);
    std::optional<std::string> XmlIdentity(const std::string& xmlId, CLUINT32 timeoutMs);
    CLUINT32 CommonRates(CLUINT32 timeoutMs);
    CLUINT32 GetRate(CLUINT32 timeoutMs);
    CLUINT32 LineRate() const noexcept { return m_line->Rate(); }
    void SetRate(CLUINT32 flag, CLUINT32 timeoutMs);
    /// Whether nothing was received since the last byte that was sent.
    bool IsLineSilent() const { return m_serial->Evidence() == LineEvidence::kSilent; }

    ISerial& Serial() { return *m_serial; }
    const std::string& PortId() const noexcept { return m_portId; }
    const std::string& DriverPath() const noexcept { return m_driver->Path(); }

private:
    template <class Operation>
    void Ask(const char* function, Operation operation);
    void CheckSuccess(const char* function, CLINT32 result);
    PortLine::Task FetchTask(const std::string& xmlId, CLUINT32 timeoutMs);
    void NoteRemark(const char* function, CLINT32 result) const;
    std::string Describe(const char* function, CLINT32 result);
    std::string ErrorText(CLINT32 result) const;
    CLINT32 ContinuePendingWrite(CLUINT32 timeoutMs);

    const std::string m_portId;
    const std::shared_ptr<const DriverLibrary> m_driver;
    const std::shared_ptr<SerialConnection> m_serial;
    const std::shared_ptr<PortLine> m_line;  // what the driver is given
    CLUINT32 m_cookie = 0;
};

}  // namespace CLProtocol
