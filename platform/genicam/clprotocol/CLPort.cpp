/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CCLPort
 */

#include "CLProtocol/CLPort.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <exception>
#include <mutex>
#include <utility>

#include "ActivityTeller.h"
#include "CLProtocol/CLProtocolTypes.h"
#include "CLProtocol/DeviceID.h"
#include "CallThread.h"
#include "DriverRegistry.h"
#include "ErrorReporter.h"
#include "ModuleLog.h"
#include "PortSerial.h"
#include "SerialPorts.h"
#include "Session.h"
#include "Texts.h"
#include "XmlFetch.h"
#include "os/LockName.h"

namespace CLProtocol {

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr std::int64_t kMaxAccess = 64 << 20;
constexpr std::int64_t kSlowestBytesPerSecond = 400;  // at 9600 baud, packets around the bytes included
constexpr auto kXmlLimit = std::chrono::hours(1);

CDeviceID Parse(const GenICam::gcstring& deviceId) {
    CDeviceID parsed;
    if (!parsed.FromString(deviceId))
        throw CL_ERR_EXCEPTION(CLP_INVALID_DEVICEID)("'%s' is no DeviceID and no template", deviceId);
    return parsed;
}

GenICam::gcstring FullDeviceId(const CDeviceID& driver, const std::string& shortDeviceId) {
    const GenICam::gcstring separator = CDeviceID::GetTokenSeperator();
    return driver.GetDriverDirectory() + separator + driver.GetDriverFileName() + separator + shortDeviceId;
}

// Whether the camera that answered is the one that was asked for. One of the two may leave out the version.
bool IsSameCamera(const CDeviceID& wanted, const GenICam::gcstring& foundText) {
    CDeviceID found;
    if (!found.FromString(foundText))
        return false;
    return found.IsMatchingTemplate(wanted.ToString()) ||
           (!wanted.GetCameraSerialNumber().empty() &&
            found.GetCameraManufacturer() == wanted.GetCameraManufacturer() &&
            found.GetCameraFamily() == wanted.GetCameraFamily() && found.GetCameraModel() == wanted.GetCameraModel() &&
            found.GetCameraSerialNumber() == wanted.GetCameraSerialNumber());
}

void CheckAccess(const void* buffer, std::int64_t length) {
    if (buffer == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("No buffer was given");
    if (length < 1 || length > kMaxAccess)
        throw INVALID_ARGUMENT_EXCEPTION("The length of an access must be 1 to %d bytes, not %d", kMaxAccess, length);
}

Milliseconds AccessLimit(std::int64_t length) {
    return CallThread::kLimit + Milliseconds(length * 1000 / kSlowestBytesPerSecond);
}

// A session that is being made, and what its probe found. Owned by the job that makes it and by who waits for it.
struct Opening {
    std::shared_ptr<Session> session;
    std::string found;
};

// Libraries number their ports anew at each count, which another thread may ask for at any moment.
std::shared_ptr<Session> OpenPort(const SerialPort& port, std::shared_ptr<const DriverLibrary> driver) {
    auto session = std::make_shared<Session>(port, std::move(driver));
    if (port.library->PortName(port.index) == port.name)
        return session;
    throw CL_ERR_EXCEPTION(CL_ERR_INVALID_INDEX)("Port '%s' has got another number while it was opened", port.id);
}

// Opens a port and looks for a camera there.
std::shared_ptr<Opening> Open(CallThread& thread, const GenICam::gcstring& portId, const CDeviceID& deviceId,
                              std::uint32_t timeoutMs) {
    const std::shared_ptr<const DriverLibrary> driver = DriverRegistry::GetInstance().Get(deviceId);
    const SerialPort port = SerialPorts::GetInstance().Find(portId.str());
    auto opening = std::make_shared<Opening>();
    const std::string wanted = deviceId.GetShortDeviceID().str();
    try {
        thread.Run(
            [=] {
                auto session = OpenPort(port, driver);
                opening->found = session->Probe(wanted, timeoutMs);
                opening->session = std::move(session);
            },
            Milliseconds(timeoutMs));
    } catch (const GenICam::GenericException&) {
        // The job may end at this very moment, and what is here then be the last reference to an open port.
        if (thread.IsStuck())
            thread.Leave(std::move(opening));
        throw;
    }
    return opening;
}

// Ends a session where its foreign code runs; the last to hold it is the job.
void CloseSession(CallThread& thread, std::shared_ptr<Session> session) {
    thread.Run([session = std::move(session)]() mutable {
        const std::shared_ptr<Session> last = std::move(session);
        last->Disconnect();
    });
}

// Ends a session that has served its purpose; that this fails is no failure of the whole.
void CloseQuietly(CallThread& thread, std::shared_ptr<Session> session) {
    try {
        CloseSession(thread, std::move(session));
    } catch (const std::exception& error) {
        Log(CLP_LOG_WARN, "Could not disconnect after a probe: %s", ReasonOf(error));
    }
}

}  // namespace

class CCLPort::Impl {
public:
    ~Impl() = default;

    void Connect(const GenICam::gcstring& portId, const GenICam::gcstring& deviceId) {
        const std::lock_guard lock(m_mutex);
        if (m_session)
            throw LOGICAL_ERROR_EXCEPTION("The port is already connected to '%s'", m_deviceId);
        TellLook(portId, deviceId, [&] { return Look(portId, deviceId); });
    }

    LookResult Look(const GenICam::gcstring& portId, const GenICam::gcstring& deviceId) {
        const CDeviceID wanted = Parse(deviceId);
        auto thread = std::make_unique<CallThread>();
        const std::shared_ptr<Opening> opening = Open(*thread, portId, wanted, m_timeoutMs);
        GenICam::gcstring found = FullDeviceId(wanted, opening->found);
        if (opening->found.empty() || !IsSameCamera(wanted, found)) {
            CloseQuietly(*thread, std::exchange(opening->session, nullptr));
            throw CL_ERR_EXCEPTION(CLP_NO_DEVICE_FOUND)("Port '%s': there is '%s' instead of '%s'", portId,
                                                        opening->found, deviceId);
        }
        m_session = std::move(opening->session);
        m_thread = std::move(thread);
        m_deviceId = found;
        m_isConnected = true;
        return {std::move(found), m_session->LineRate()};
    }

    void Disconnect() {
        const std::lock_guard lock(m_mutex);
        m_isConnected = false;
        m_deviceId.clear();
        if (!m_session)
            return;
        const std::unique_ptr<CallThread> thread = std::move(m_thread);
        CloseSession(*thread, std::exchange(m_session, nullptr));
    }

    // Runs a job with the session while no other access runs. The job must own all that it uses.
    template <class Job>
    void Run(Job job, Milliseconds silence, Milliseconds limit) {
        const std::lock_guard lock(m_mutex);
        if (!m_session)
            throw RUNTIME_EXCEPTION("The port is not connected");
        m_thread->Run([session = m_session, job = std::move(job)] { job(*session); }, silence, limit);
    }

    GenICam::gcstring GetDeviceId() const {
        const std::lock_guard lock(m_mutex);
        return m_deviceId;
    }

    bool IsConnected() const noexcept { return m_isConnected; }
    std::uint32_t GetTimeout() const noexcept { return m_timeoutMs; }
    void SetTimeout(std::uint32_t timeoutMs) noexcept { m_timeoutMs = timeoutMs; }
    ISerial& Serial() noexcept { return m_serial; }

private:
    CLINT32 RunOnLine(PortSerial::Call call, Milliseconds timeout) {
        const auto result = std::make_shared<CLINT32>();
        Run([result, call = std::move(call)](Session& session) { *result = call(session.Serial()); }, timeout,
            CallThread::kLimit + timeout);
        return *result;
    }

    mutable std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "CLPort"};
    std::atomic<bool> m_isConnected{false};
    std::atomic<std::uint32_t> m_timeoutMs{CLP_REGISTER_TIMEOUT};
    GenICam::gcstring m_deviceId;
    std::shared_ptr<Session> m_session;
    std::unique_ptr<CallThread> m_thread;
    PortSerial m_serial{
        [this](PortSerial::Call call, Milliseconds timeout) { return RunOnLine(std::move(call), timeout); }};
};

/**
 * \class CCLPort
 * \brief One connection to one camera
 *
 * The foreign libraries' functions run on a thread of the connection's own, which ends while nobody uses it. When one
 * does not return, neither giving a sign of life on the serial line, the access ends with CLErrException -10004 after
 * the time that Patience::callMs says, and so does every later one at once: nothing can interrupt such a function. Its
 * port stays open until it returns; other ports are not affected.
 *
 * \context Thread-safe; accesses to one port run one after the other.
 */

CCLPort::CCLPort() : m_impl(std::make_unique<Impl>()) {}

/**
 * \brief Disconnect
 * \throw GenICam::GenericException Disconnecting failed; all is freed nevertheless. Nothing is thrown while another
 * exception is under way. A smart pointer's reset can't pass this on and ends the process: where the driver may fail,
 * call Disconnect before.
 */
CCLPort::~CCLPort() noexcept(false) {
    try {
        m_impl->Disconnect();
    } catch (const GenICam::GenericException& error) {
        if (std::uncaught_exceptions() == 0)
            throw;
        Log(CLP_LOG_ERROR, "Could not disconnect: %s", error.GetDescription());
    } catch (const std::exception& error) {  // no memory: all is freed nevertheless
        Log(CLP_LOG_ERROR, "Could not disconnect: %s", error.what());
    }
}

/**
 * \brief The serial ports of the machine
 * \param[out] portIds Their PortIDs "Maker#PortName", each of them unique
 */
void CCLPort::GetPortIDs(GenICam::gcstring_vector& portIds) {
    portIds.clear();
    for (const SerialPort& port : SerialPorts::GetInstance().Enumerate())
        portIds.push_back(port.id);
}

/**
 * \brief What the drivers of the machine can look for
 * \param[out] templates Full DeviceID templates: driver's directory, driver's file name, and the driver's template
 */
void CCLPort::GetDeviceIDTemplates(GenICam::gcstring_vector& templates) {
    templates.clear();
    for (const std::string& text : DriverRegistry::GetInstance().Templates())
        templates.push_back(text);
}

/**
 * \brief Look for a camera on a port
 * \param[in] portId One of GetPortIDs
 * \param[in] deviceIdTemplate A full DeviceID template or a DeviceID
 * \param[in] timeoutMs Time-out in milliseconds of each single exchange on the line
 *
 * The port is opened at 9600 baud and closed again.
 *
 * \return Full DeviceID of the camera that the driver found; empty when there is none of its own
 * \throw CLErrException Driver or serial library failed, with its code: -10003 the port is in use, -10004 or -30209
 * nobody answers, -20100 the template is none, -10098 the driver can't be loaded, -10002 there is no such port
 * \throw GenICam::RuntimeException A library threw an exception
 */
GenICam::gcstring CCLPort::ProbeDevice(const GenICam::gcstring& portId, const GenICam::gcstring& deviceIdTemplate,
                                       std::uint32_t timeoutMs) {
    return TellLook(portId, deviceIdTemplate, [&]() -> LookResult {
        const CDeviceID wanted = Parse(deviceIdTemplate);
        CallThread thread;
        const std::shared_ptr<Opening> opening = Open(thread, portId, wanted, timeoutMs);
        const CLUINT32 rateFlag = opening->session->LineRate();
        CloseQuietly(thread, std::exchange(opening->session, nullptr));
        return {opening->found.empty() ? GenICam::gcstring() : FullDeviceId(wanted, opening->found), rateFlag};
    });
}

/**
 * \brief Connect to a camera
 * \param[in] portId One of GetPortIDs
 * \param[in] deviceId Full DeviceID of the camera, or a template
 * \throw CLErrException As ProbeDevice does; -20101 when another camera answers
 * \throw GenICam::LogicalErrorException The port is connected already
 * \throw GenICam::RuntimeException A library threw an exception
 */
void CCLPort::Connect(const GenICam::gcstring& portId, const GenICam::gcstring& deviceId) {
    m_impl->Connect(portId, deviceId);
}

/**
 * \brief End the connection, if there is one
 * \throw GenICam::GenericException A library failed; the connection is gone nevertheless
 */
void CCLPort::Disconnect() {
    m_impl->Disconnect();
}

bool CCLPort::IsConnected() const {
    return m_impl->IsConnected();
}

/// Sets the time-out in milliseconds of each single exchange on the line; 500 at the start.
void CCLPort::SetSerialTimeOut(std::uint32_t timeoutMs) {
    m_impl->SetTimeout(timeoutMs);
}

/// Full DeviceID of the connected camera, as it gave it; empty without a connection.
GenICam::gcstring CCLPort::GetDeviceID() const {
    return m_impl->GetDeviceId();
}

/**
 * \brief The camera's best description
 * \param[in] useCache Whether one that was fetched before for the same XML ID may be used, and this one be kept
 *
 * While the camera is read from, the line runs at the highest baud rate that camera and port both support; it is put
 * back afterwards, in up to three attempts where the camera has not fallen silent.
 *
 * \return The XML text, unpacked
 * \throw CLErrException Nobody answers any more
 * \throw GenICam::AccessException There is none (-20102)
 * \throw GenICam::GenericException The camera refuses, as for Read
 * \throw GenICam::RuntimeException Not connected, the description can't be unpacked, or a library threw
 */
GenICam::gcstring CCLPort::GetXML(bool useCache) {
    const auto xml = std::make_shared<std::string>();
    const std::uint32_t timeoutMs = m_impl->GetTimeout();
    const CDeviceID deviceId(GetDeviceID());
    m_impl->Run([=](Session& session) { *xml = FetchDescription(session, deviceId, timeoutMs, useCache); },
                Milliseconds(timeoutMs), kXmlLimit);
    return std::move(*xml);
}

/**
 * \brief The XML IDs of the descriptions for the camera, best first
 * \param[out] xmlIds Those that the camera offers and those of files; each once
 * \throw CLErrException Nobody answers any more
 * \throw GenICam::GenericException The camera refuses, as for Read
 * \throw GenICam::RuntimeException Not connected, or a library threw
 */
void CCLPort::GetXMLIDs(GenICam::gcstring_vector& xmlIds) {
    const auto candidates = std::make_shared<std::vector<XmlCandidate>>();
    const std::uint32_t timeoutMs = m_impl->GetTimeout();
    const CDeviceID deviceId(GetDeviceID());
    m_impl->Run(
        [=](Session& session) {
            std::string whyNone;  // an empty list says enough
            *candidates = FindDescriptions(session, deviceId, timeoutMs, whyNone);
        },
        Milliseconds(timeoutMs), CallThread::kLimit);
    xmlIds.clear();
    for (const XmlCandidate& candidate : *candidates)
        if (std::find(xmlIds.begin(), xmlIds.end(), candidate.id.text) == xmlIds.end())
            xmlIds.push_back(candidate.id.text);
}

/// The line of the connected camera, for its supported baud rates; null without a connection. It is valid as long as
/// the port is; its functions fail without a connection.
ISerial* CCLPort::GetSerial() const {
    return m_impl->IsConnected() ? &m_impl->Serial() : nullptr;
}

/// RW with a connection, NA without.
GenApi::EAccessMode CCLPort::GetAccessMode() const {
    return m_impl->IsConnected() ? GenApi::RW : GenApi::NA;
}

/**
 * \brief Read registers
 * \param[out] buffer Takes the bytes; unchanged on failure
 * \param[in] address Address of the first byte
 * \param[in] length Number of bytes, 1 to 64 MiB
 * \throw CLErrException Nobody answers any more, or the line is broken; with the driver's code
 * \throw GenICam::AccessException, OutOfRangeException, InvalidArgumentException The camera or its driver refuses
 * while the line works; docs/error-codes.md says which code leads to which
 * \throw GenICam::TimeoutException The camera answers that it is busy, and stays so
 * \throw GenICam::InvalidArgumentException No buffer, or a length out of range
 * \throw GenICam::RuntimeException Not connected, or a library threw
 */
void CCLPort::Read(void* buffer, std::int64_t address, std::int64_t length) {
    CheckAccess(buffer, length);
    const auto bytes = std::make_shared<std::vector<char>>(static_cast<std::size_t>(length));
    const std::uint32_t timeoutMs = m_impl->GetTimeout();
    m_impl->Run([=](Session& session) { session.Read(address, *bytes, timeoutMs); }, Milliseconds(timeoutMs),
                AccessLimit(length));
    std::memcpy(buffer, bytes->data(), bytes->size());
}

/**
 * \brief Write registers and wait until the camera is done with it
 * \param[in] buffer The bytes
 * \param[in] address Address of the first byte
 * \param[in] length Number of bytes, 1 to 64 MiB
 * \throw GenICam::TimeoutException The camera is still not done after the time that Patience::pendingWriteMs says
 * \throw GenICam::GenericException As for Read
 */
void CCLPort::Write(const void* buffer, std::int64_t address, std::int64_t length) {
    CheckAccess(buffer, length);
    const char* const first = static_cast<const char*>(buffer);
    const auto bytes = std::make_shared<const std::vector<char>>(first, first + length);
    const std::uint32_t timeoutMs = m_impl->GetTimeout();
    m_impl->Run([=](Session& session) { session.Write(address, *bytes, timeoutMs); }, Milliseconds(timeoutMs),
                AccessLimit(length) + Milliseconds(GetPatience().pendingWriteMs));
}

}  // namespace CLProtocol
