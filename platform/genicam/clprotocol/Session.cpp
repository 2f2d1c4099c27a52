/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A connection to one camera
 */

#include "Session.h"

#include <chrono>
#include <thread>
#include <utility>

#include "ActivityTeller.h"
#include "CLProtocol/CLException.h"
#include "CLProtocol/Diagnostics.h"
#include "Failures.h"
#include "ModuleLog.h"
#include "Texts.h"
#include "base/Text.h"

namespace CLProtocol {

namespace {

using Clock = std::chrono::steady_clock;

constexpr CLUINT32 kAllRates = 0xff;
constexpr auto kPendingPause = std::chrono::milliseconds(1);

}  // namespace

/**
 * \class Session
 * \brief An open serial port with a driver on it, and the driver's connection once a probe has found a camera
 *
 * While the connection is made and ended, a failure is CLErrException with the code that the driver or the serial
 * library gave: there is no camera yet that could refuse. From then on ThrowFailure says which exception stands for a
 * code. The text names function, library, port and code and explains the code: the driver is asked first, then the
 * serial library, then the standard. What a library throws arrives as GenICam::RuntimeException.
 *
 * \context One thread at a time.
 */

/// Opens the port at 9600 baud.
Session::Session(const SerialPort& port, std::shared_ptr<const DriverLibrary> driver)
    : m_portId(port.id),
      m_driver(std::move(driver)),
      m_serial(std::make_shared<SerialConnection>(port.library, port.index, port.id)),
      m_line(PortLines::GetInstance().Lend(port.id)) {
    m_line->Attach(m_serial);
}

Session::~Session() {
    try {
        Disconnect();
    } catch (const std::exception& error) {
        Log(CLP_LOG_ERROR, "%s", ReasonOf(error));
    }
    m_line->Attach(nullptr);
}

/**
 * \brief Look for a camera and connect to it
 * \param[in] templateOrDeviceId What to look for, in its short form
 * \param[in] timeoutMs Time-out of each single exchange on the line
 * \return Short DeviceID of the camera that was found; empty when there is none
 */
std::string Session::Probe(const std::string& templateOrDeviceId, CLUINT32 timeoutMs) {
    std::string deviceId;
    const PortLine::Task task(*m_line);
    const CLINT32 result = m_driver->Probe(*m_line, templateOrDeviceId, deviceId, m_cookie, timeoutMs);
    if (result < 0)
        m_cookie = 0;  // a driver that fails has nothing to disconnect
    CheckSuccess("clpProbeDevice", result);
    if (!deviceId.empty() && m_cookie == 0)
        CheckSuccess("clpProbeDevice", CLP_INVALID_COOKIE);
    return deviceId;
}

/// Ends the driver's connection, if there is one.
void Session::Disconnect() {
    if (m_cookie != 0)
        CheckSuccess("clpDisconnect", m_driver->Disconnect(std::exchange(m_cookie, 0)));
}

/// Reads as many bytes as \a bytes has.
void Session::Read(CLINT64 address, std::vector<char>& bytes, CLUINT32 timeoutMs) {
    Ask("clpReadRegister", [&] {
        return m_driver->Read(*m_line, m_cookie, address, bytes.data(), static_cast<CLINT64>(bytes.size()), timeoutMs);
    });
}

/// Writes \a bytes and waits until the camera is done with it.
void Session::Write(CLINT64 address, const std::vector<char>& bytes, CLUINT32 timeoutMs) {
    bool isPending = false;
    Ask("clpWriteRegister", [&] {
        const CLINT32 result =
            m_driver->Write(*m_line, m_cookie, address, bytes.data(), static_cast<CLINT64>(bytes.size()), timeoutMs);
        isPending = result == CLP_PENDING_WRITE;
        return result;
    });
    if (isPending)
        Ask("clpContinueWriteRegister", [&] { return ContinuePendingWrite(timeoutMs); });
}

CLINT32 Session::ContinuePendingWrite(CLUINT32 timeoutMs) {
    const auto end = Clock::now() + std::chrono::milliseconds(GetPatience().pendingWriteMs);
    while (Clock::now() < end) {
        const auto start = Clock::now();
        const CLINT32 result = m_driver->ContinueWrite(*m_line, m_cookie, true, timeoutMs);
        if (result != CLP_PENDING_WRITE)
            return result;
        // A driver that does not wait by itself must not keep the processor busy.
        if (Clock::now() - start < kPendingPause)
            std::this_thread::sleep_for(kPendingPause);
    }
    // That the driver has left off is no success of the write.
    const CLINT32 result = m_driver->ContinueWrite(*m_line, m_cookie, false, timeoutMs);
    if (result < 0)
        return result;
    throw TIMEOUT_EXCEPTION("Port '%s': the camera calls a write pending for more than %u ms", m_portId,
                            GetPatience().pendingWriteMs);
}

/**
 * \brief The XML IDs that the camera offers
 * \param[out] whyNone The driver's words when it says that there is none
 */
std::vector<std::string> Session::GetXmlIds(CLUINT32 timeoutMs, std::string& whyNone) {
    std::string ids;
    Ask("clpGetXMLIDs", [&] {
        const CLINT32 result = m_driver->GetXmlIds(*m_line, m_cookie, ids, timeoutMs);
        if (result != CLP_NO_XMLDESCRIPTION_FOUND)
            return result;
        whyNone = ErrorText(result);
        return static_cast<CLINT32>(CL_ERR_NO_ERR);
    });
    return base::SplitWithoutEmpty(ids, '\t');
}

/// The bytes of a description, as the camera has them.
std::string Session::GetXml(const std::string& xmlId, CLUINT32 timeoutMs) {
    std::string xml;
    const PortLine::Task task = FetchTask(xmlId, timeoutMs);
    Ask("clpGetXMLDescription", [&] { return m_driver->GetXml(*m_line, m_cookie, xmlId, xml, timeoutMs); });
    return xml;
}

/**
 * \brief What stands for the very bytes that GetXml would give now
 * \return Nothing when that can't be told. Without a word of the driver's it is the XML ID, as the standard has it
 */
std::optional<std::string> Session::XmlIdentity(const std::string& xmlId, CLUINT32 timeoutMs) {
    std::string digest;
    bool isTold = true;
    Ask("clpGetXMLDigest", [&] {
        const CLINT32 result = m_driver->GetXmlDigest(*m_line, m_cookie, xmlId, digest, timeoutMs);
        isTold = result != CL_ERR_FUNCTION_NOT_FOUND;
        return isTold ? result : static_cast<CLINT32>(CL_ERR_NO_ERR);
    });
    if (!isTold)
        return xmlId;
    return digest.empty() ? std::nullopt : std::optional(xmlId + '\n' + digest);
}

// Tells the host how a fetch goes on. The driver is asked for the size only where somebody wants to know it: not every
// driver has it at hand.
PortLine::Task Session::FetchTask(const std::string& xmlId, CLUINT32 timeoutMs) {
    if (!IsActivityHeard())
        return PortLine::Task(*m_line);
    Activity activity{.kind = Activity::Kind::kFetching, .portId = m_portId, .baudRateFlag = m_line->Rate()};
    activity.totalBytes = m_driver->GetXmlSize(*m_line, m_cookie, xmlId, timeoutMs);
    return PortLine::Task(*m_line, [activity](std::size_t bytes) mutable {
        activity.doneBytes += bytes;
        Tell(activity);
    });
}

/// The rates, as flags, that camera and port both support; 0 when the driver can't tell.
CLUINT32 Session::CommonRates(CLUINT32 timeoutMs) {
    CLUINT32 common = 0;
    CLUINT32 port = 0;
    if (!m_driver->IsParameterSupported(CLP_DEVICE_BAUDERATE) ||
        !m_driver->IsParameterSupported(CLP_DEVICE_SUPPORTED_BAUDERATES) ||
        m_driver->GetParameter(*m_line, CLP_DEVICE_SUPPORTED_BAUDERATES, m_cookie, common, timeoutMs) < 0 ||
        m_serial->clGetSupportedBaudRates(&port) < 0)
        return 0;
    return common & port & kAllRates;
}

/// The camera's present rate, as a flag.
CLUINT32 Session::GetRate(CLUINT32 timeoutMs) {
    CLUINT32 rate = 0;
    Ask("clpGetParam",
        [&] { return m_driver->GetParameter(*m_line, CLP_DEVICE_BAUDERATE, m_cookie, rate, timeoutMs); });
    return rate;
}

/// Changes the rate of camera and port.
void Session::SetRate(CLUINT32 flag, CLUINT32 timeoutMs) {
    Ask("clpSetParam",
        [&] { return m_driver->SetParameter(*m_line, CLP_DEVICE_BAUDERATE, m_cookie, flag, timeoutMs); });
}

// Asks the connected camera for something, and watches the line meanwhile.
template <class Operation>
void Session::Ask(const char* function, Operation operation) {
    m_serial->WatchAnew();
    const CLINT32 result = operation();
    if (result < 0)
        ThrowFailure(Describe(function, result), result, m_serial->Evidence());
    NoteRemark(function, result);
}

void Session::CheckSuccess(const char* function, CLINT32 result) {
    if (result < 0)
        throw CLErrException(Describe(function, result).c_str(), __FILE__, __LINE__, result);
    NoteRemark(function, result);
}

void Session::NoteRemark(const char* function, CLINT32 result) const {
    if (result > 0)
        Log(CLP_LOG_DEBUG, "Port '%s': function '%s' of '%s' succeeded with %d", m_portId, function, m_driver->Path(),
            result);
}

std::string Session::Describe(const char* function, CLINT32 result) {
    std::string text = GenICam::FormatText("Port '%s': function '%s' of '%s' failed: %s (%d)", m_portId, function,
                                           m_driver->Path(), ErrorText(result), result);
    if (const std::string cause = m_serial->TakeCause(); !cause.empty())
        text += ". " + cause;
    return text;
}

std::string Session::ErrorText(CLINT32 result) const {
    if (std::optional<std::string> text = m_driver->ErrorText(result, m_cookie))
        return *text;
    return m_serial->Library().ErrorText(result);
}

}  // namespace CLProtocol
