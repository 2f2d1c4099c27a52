/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One serial connection: the register space of the camera's node map
 */

#include "VantoCLSer/VantoCLSerPort.h"

#include <boost/chrono/duration.hpp>
#include <thread>
#include <utility>

#include "CLProtocol/CLException.h"
#include "CLProtocol/CLProtocolTypes.h"
#include "CLProtocol/DeviceID.h"
#include "GenApi/INodeMap.h"
#include "GenApi/IValue.h"
#include "VantoCLSer/base/Log.h"
#include "clser/ClSerial.h"
#include "vanto/internal/VantoException.h"

namespace Vanto {

using CLProtocol::CCLPort;
using CLProtocol::CDeviceID;
using CLProtocol::CLErrException;
using GenICam::GenericException;

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerPort";
constexpr std::uint32_t kSerialTimeout = 400;  // milliseconds
constexpr int kProbeAttempts = 2;
constexpr std::chrono::milliseconds kProbePause(50);
constexpr boost::chrono::milliseconds kGiveWayInterval(5);

// Camera Link's time-out, and the drivers' own code for it.
bool IsNoAnswer(std::int32_t errorCode) {
    return errorCode == CL_ERR_TIMEOUT || errorCode == CLProtocol::CLP_DRIVER_NO_ANSWER;
}

}  // namespace

void CVantoCLSerPort::CLPortDeleter::operator()(CCLPort* port) const noexcept {
    try {
        delete port;
    } catch (...) {
        // Close has logged it.
    }
}

CVantoCLSerPort::CVantoCLSerPort(const gcstring& portId) : m_portId(portId) {}

CVantoCLSerPort::~CVantoCLSerPort() {
    Close(false);
    m_timerOwner.reset();
}

/**
 * \brief Connect a port for the first time, or after a full close
 * \param[in] deviceId The camera's full device identifier
 * \return false when already connected or known, or, logged, when the camera can't be connected
 * \context Any thread
 */
bool CVantoCLSerPort::Connect(const gcstring& deviceId) {
    const Lock lock(m_lock);
    if (m_clPort || !m_deviceId.empty())
        return false;
    try {
        // What needs memory comes first: there is no connection then that nobody asked for.
        CDeviceID id;
        const bool isParsed = id.FromString(deviceId);
        const gcstring driver = isParsed ? id.GetDriverPath() : gcstring();
        MakeHelpers();
        ConnectLocked(deviceId);
        if (!isParsed) {
            LogTrace(PortLog(), tracelog::kError, "Could not parse DeviceID '%s'", deviceId);
            return false;
        }
        m_driverLibrary->Load(driver);
        RestartTimer();
        return true;
    } catch (const GenericException& error) {
        LogTrace(PortLog(), tracelog::kError, "Could not connect CLPort '%s' Error '%s'", m_portId,
                 error.GetDescription());
        return false;
    }
}

void CVantoCLSerPort::MakeHelpers() {
    if (!m_driverLibrary)
        m_driverLibrary = std::make_unique<CLibraryLoader>();
    if (!m_timerOwner)
        m_timerOwner = std::make_unique<CInactivityTimer>();
}

void CVantoCLSerPort::ConnectLocked(const gcstring& deviceId) {
    gcstring known(deviceId);
    CLPortPtr port(new CCLPort);
    port->SetSerialTimeOut(kSerialTimeout);
    port->Connect(m_portId, deviceId);
    StoreConnection(std::move(port));
    m_deviceId = std::move(known);
    m_timer = m_timerOwner.get();
    LogTrace(PortLog(), tracelog::kDebug, "Successfully created/connected deviceID '%s' on '%s'.", m_deviceId,
             m_portId);
}

void CVantoCLSerPort::StoreConnection(CLPortPtr port) {
    m_clPort = std::move(port);
    m_connected = m_clPort != nullptr;
}

/**
 * \brief Open the connection to a known camera again
 * \return false when there is none to open, or it can't be opened; a camera that is gone fires removal
 * \context Any thread
 */
bool CVantoCLSerPort::Reopen() {
    bool gone = false;
    Lock lock(m_lock);
    const std::uint64_t opening = GetOpening();
    const bool reopened = ReopenLocked(gone);
    const gcstring deviceId = m_deviceId;
    lock.unlock();
    if (gone)
        FireRemoval(deviceId, opening);
    return reopened;
}

bool CVantoCLSerPort::ReopenLocked(bool& gone) {
    if (m_deviceId.empty() || m_clPort)
        return false;
    LogTrace(PortLog(), tracelog::kDebug, "Reopening CLPort '%s'", m_portId);
    try {
        CLPortPtr port(new CCLPort);
        port->Connect(m_portId, m_deviceId);
        StoreConnection(std::move(port));
        return true;
    } catch (const CLErrException& error) {
        LogTrace(PortLog(), tracelog::kError, "Could not connect CLPort '%s' DeviceID '%s' Error: %i '%s'", m_portId,
                 m_deviceId, error.GetErrorCode(), error.GetDescription());
        gone = IsNoAnswer(error.GetErrorCode());
    } catch (const GenericException& error) {
        LogTrace(PortLog(), tracelog::kError, "Could not connect CLPort '%s' DeviceID '%s' Error: '%s'", m_portId,
                 m_deviceId, error.GetDescription());
    }
    LogTrace(PortLog(), tracelog::kError, "Could not reopen CLPort '%s'", m_portId);
    return false;
}

/**
 * \brief Close the connection
 * \param[in] temporary true keeps the device identifier, so that the next access opens the same camera again
 * \return false when there was no connection, or its timer could not be stopped
 * \context Any thread
 */
bool CVantoCLSerPort::Close(bool temporary) noexcept {
    if (!m_connected) {
        if (!temporary)
            ClearRemoval();
        return false;
    }
    // Before the lock is taken: an access that holds it may be long.
    if (!temporary && !StopTimer())
        return false;
    const Lock lock(m_lock);
    DisconnectLocked();
    m_connected = m_clPort != nullptr;
    if (!temporary) {
        m_deviceId = gcstring();
        ClearRemoval();
        LogTrace(PortLog(), tracelog::kDebug, "Closed CLPort '%s'", m_portId);
    }
    return true;
}

void CVantoCLSerPort::DisconnectLocked() noexcept {
    const auto log = [this](const char* text) {
        LogTrace(PortLog(), tracelog::kError, "Could not remove CLPort '%s' DeviceID '%s' Error: '%s'", m_portId,
                 m_deviceId, text);
    };
    try {
        // Apart from the destruction, so that a connection that can't be ended stays an object that can be used.
        if (m_clPort)
            m_clPort->Disconnect();
        m_clPort.reset();
    } catch (const GenericException& error) {
        log(error.GetDescription());
    } catch (const std::exception& error) {
        log(error.what());
        m_clPort.reset();  // it has ended all the same, and throws nothing more
    }
}

// Runs an operation on a connection that is made for it alone where there is none.
template <class Operation>
auto CVantoCLSerPort::WithConnection(const gcstring& deviceId, const Operation& operation) {
    const Lock lock(m_lock);
    PortConnection ownConnection;
    if (!m_clPort) {
        if (!Connect(deviceId))
            throw VANTO_EXCEPTION(RuntimeException, kSource)("Could not open port '%s'", deviceId);
        ownConnection.reset(this);
    }
    return operation();
}

/**
 * \brief Whether the camera holds a description
 * \param[in] deviceId The camera, connected for the call where the port is closed
 * \throw RuntimeException The port can't be opened
 * \throw GenericException The description can't be fetched
 * \context Any thread
 */
bool CVantoCLSerPort::HasXML(const gcstring& deviceId) {
    return WithConnection(deviceId, [this] { return HasXMLLocked(); });
}

/**
 * \brief The description that the camera holds
 * \param[in] deviceId The camera, connected for the call where the port is closed
 * \return GenICam XML; empty, logged, when it can't be fetched
 * \throw RuntimeException The port can't be opened
 * \context Any thread
 */
gcstring CVantoCLSerPort::GetXML(const gcstring& deviceId) {
    return WithConnection(deviceId, [this] { return GetXMLLocked(); });
}

bool CVantoCLSerPort::HasXMLLocked() {
    if (!m_clPort)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("CLPort not open!");
    m_xml = m_clPort->GetXML(true);
    RestartTimer();
    return !m_xml.empty();
}

gcstring CVantoCLSerPort::GetXMLLocked() {
    const auto fail = [](const char* text) {
        LogTrace(TlLog(), tracelog::kError, "Exception while calling CCLPort::GetXML error: %s", text);
        return gcstring();
    };
    if (!m_clPort)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("CLPort not open!");
    try {
        if (m_xml.empty())
            m_xml = m_clPort->GetXML(true);
        RestartTimer();
        return m_xml;
    } catch (const GenericException& error) {
        return fail(error.GetDescription());
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}

void CVantoCLSerPort::Read(void* buffer, std::int64_t address, std::int64_t length) {
    Access("read", [=](CCLPort& port) { port.Read(buffer, address, length); });
}

void CVantoCLSerPort::Write(const void* buffer, std::int64_t address, std::int64_t length) {
    Access("write", [=](CCLPort& port) { port.Write(buffer, address, length); });
}

// One register access. Removal is fired when T has given the port's lock back: in its callback the application may wait
// for a lock that thread U holds, which waits for the port.
template <class Operation>
void CVantoCLSerPort::Access(const char* verb, const Operation& operation) {
    if (m_removed)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Device '%s' already removed/disconnected.", m_portId);
    Lock lock(m_lock);
    const std::uint64_t opening = GetOpening();
    const gcstring deviceId = m_deviceId;
    bool gone = false;
    if (!m_clPort && !ReopenLocked(gone)) {
        lock.unlock();
        FireRemoval(deviceId, opening);
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Could not reopen CLPort '%s'", m_portId);
    }
    try {
        operation(*m_clPort);
        RestartTimer();
    } catch (const CLErrException& error) {
        LogTrace(PortLog(), tracelog::kError, "Could not %s from CLSer port '%s'. CL Error: %i '%s'", verb, m_portId,
                 error.GetErrorCode(), error.GetDescription());
        lock.unlock();
        FireRemoval(deviceId, opening);
        throw;
    } catch (const GenericException& error) {
        LogTrace(PortLog(), tracelog::kError, "Could not %s from CLSer port '%s'. GenICam Error: '%s'", verb, m_portId,
                 error.GetDescription());
        throw;
    } catch (const std::exception& error) {
        LogTrace(PortLog(), tracelog::kError, "Could not %s from CLSer port '%s'. std-Error: '%s'", verb, m_portId,
                 error.what());
        throw;
    }
}

/**
 * \brief Learn which camera is on the port
 * \param[in] templates Device-identifier templates to try in order; null for all that CLProtocol knows
 * \return The device identifier found, or the empty string. A camera that is open and answers with its serial number
 *         is not probed.
 * \context Any thread
 */
gcstring CVantoCLSerPort::Probe(const gcstring_vector* templates) {
    // Without the port's lock: thread T that reads a feature holds the lock of the open device's node map, and waits
    // for the port.
    const Use use = GetUse();
    const gcstring deviceId = GetDeviceID();
    if (use.owner && use.owner->IsOpen() && !deviceId.empty()) {
        const QuickCheck result = CheckOpenDevice(use, deviceId);
        if (result == QuickCheck::kSame)
            return deviceId;
        if (result == QuickCheck::kGone)
            return gcstring();
    }
    gcstring_vector all;
    if (templates == nullptr) {
        CCLPort::GetDeviceIDTemplates(all);
        templates = &all;
    }
    Lock lock(m_lock);
    const std::uint64_t opening = GetOpening();
    bool gone = false;
    const gcstring found = ProbeDisconnected(*templates, gone);
    lock.unlock();
    if (gone)
        FireRemoval(deviceId, opening);
    return found;
}

// To others the port stays connected meanwhile: thread T that opens or closes a device waits for the port's lock, which
// the probe holds to its end.
// Whatever ends it, the connection that there was is opened again, or the port says that there is none.
gcstring CVantoCLSerPort::ProbeDisconnected(const gcstring_vector& templates, bool& gone) {
    struct Restorer {
        CVantoCLSerPort& port;
        bool& gone;
        const bool wasConnected = port.m_clPort != nullptr;
        ~Restorer() {
            try {
                if (wasConnected)
                    port.ReopenLocked(gone);
            } catch (...) {
                // No memory for it: the next access opens it.
            }
            port.m_connected = port.m_clPort != nullptr;
        }
    };
    const Restorer restorer{*this, gone};
    DisconnectLocked();
    return ProbeLocked(templates);
}

CVantoCLSerPort::QuickCheck CVantoCLSerPort::CheckOpenDevice(const Use& use, const gcstring& deviceId) {
    try {
        GenApi::INodeMap* nodeMap = use.owner->GetNodeMap();
        auto* value = dynamic_cast<GenApi::IValue*>(nodeMap != nullptr ? nodeMap->GetNode("DeviceID") : nullptr);
        if (value == nullptr) {
            LogTrace(PortLog(), tracelog::kWarning,
                     "Device is opened but 'DeviceID' node not found. Performing a full probe.");
            return QuickCheck::kUnknown;
        }
        const gcstring serialNumber = value->ToString(false, true);
        CDeviceID id;
        if (!id.FromString(deviceId))
            return QuickCheck::kUnknown;
        if (serialNumber == id.GetCameraSerialNumber())
            return QuickCheck::kSame;
        FireRemoval(deviceId, use.opening);
        return QuickCheck::kGone;
    } catch (const GenericException&) {
        return QuickCheck::kGone;
    }
}

gcstring CVantoCLSerPort::ProbeLocked(const gcstring_vector& templates) {
    bool stop = false;
    for (const gcstring& deviceIdTemplate : templates) {
        const gcstring found = ProbeTemplate(deviceIdTemplate, stop);
        if (stop || !found.empty())
            return found;
    }
    return gcstring();
}

gcstring CVantoCLSerPort::ProbeTemplate(const gcstring& deviceIdTemplate, bool& stop) {
    for (int attempt = 1; attempt <= kProbeAttempts; ++attempt) {
        try {
            return CCLPort::ProbeDevice(m_portId, deviceIdTemplate, kSerialTimeout);
        } catch (const CLErrException& error) {
            if (IsNoAnswer(error.GetErrorCode())) {
                LogTrace(TlLog(), tracelog::kWarning,
                         "Seems there is no device connected to port '%s'. Skipping further probes.", m_portId);
                stop = true;
                return gcstring();
            }
            if (attempt < kProbeAttempts)
                LogTrace(TlLog(), tracelog::kWarning, "Error accessing port '%s'. Retrying!", m_portId);
            std::this_thread::sleep_for(kProbePause);
        } catch (const GenericException& error) {
            // The text stays as it is: logs are searched for it.
            LogTrace(TlLog(), tracelog::kWarning, "Port '%s': Generic Exceptiopn! '%s'", m_portId,
                     error.GetDescription());
            return gcstring();
        }
    }
    return gcstring();
}

/**
 * \brief Close the connection after this time without an access
 * \param[in] milliseconds 0 keeps it open
 * \return false when the timer can't be changed
 * \context Any thread; takes effect at once
 */
bool CVantoCLSerPort::SetAutoCloseTimeout(std::uint32_t milliseconds) {
    m_autoCloseTimeout = milliseconds;
    return RestartTimer();
}

void CVantoCLSerPort::SetDeviceName(const char* name) {
    const Lock lock(m_lock);
    m_deviceName = gcstring(name);
}

/**
 * \brief Choose the device that is told when the camera is gone
 * \param[in] owner Kept alive by a use in progress; null for none
 * \return A number for this opening, which the owner's OnRemoval gets
 * \context Any thread
 */
std::uint64_t CVantoCLSerPort::SetOwner(std::shared_ptr<IPortOwner> owner) {
    const std::lock_guard lock(m_ownerLock);
    m_use.owner.swap(owner);
    return ++m_use.opening;
}

CVantoCLSerPort::Use CVantoCLSerPort::GetUse() const {
    const std::lock_guard lock(m_ownerLock);
    return m_use;
}

std::uint64_t CVantoCLSerPort::GetOpening() const {
    const std::lock_guard lock(m_ownerLock);
    return m_use.opening;
}

gcstring CVantoCLSerPort::GetDeviceID() const {
    const Lock lock(m_lock);
    return m_deviceId;
}

/**
 * \brief The baud rates of the serial port behind a live connection, as Camera Link flags
 * \return 0 without a connection, and when the serial library does not tell
 */
std::uint32_t CVantoCLSerPort::GetSupportedBaudRates() {
    const Lock lock(m_lock);
    CLProtocol::ISerial* serial = m_clPort ? m_clPort->GetSerial() : nullptr;
    CLUINT32 mask = 0;
    if (serial == nullptr || serial->clGetSupportedBaudRates(&mask) != 0)
        return 0;
    return mask;
}

// At most once until a full close, whoever finds out first. Not with the port's lock: see Access.
void CVantoCLSerPort::FireRemoval(const gcstring& deviceId, std::uint64_t opening) {
    const std::shared_ptr<IPortOwner> owner = ClaimRemoval(opening);
    if (!owner)
        return;
    LogTrace(PortLog(), tracelog::kDebug,
             "Device removal for PortID '%s' DeviceID '%s' detected. Firing removal callbacks.", m_portId, deviceId);
    MarkRemoved(opening);
    owner->OnRemoval(opening);
}

// Whom to tell; null when somebody else does. A device that has come to the port meanwhile has not lost its camera, and
// none has when the owner was closed, not even the owner itself that was opened again.
std::shared_ptr<IPortOwner> CVantoCLSerPort::ClaimRemoval(std::uint64_t opening) {
    const std::lock_guard lock(m_ownerLock);
    if (!m_use.owner || m_use.opening != opening || std::exchange(m_removalClaimed, true))
        return nullptr;
    return m_use.owner;
}

void CVantoCLSerPort::MarkRemoved(std::uint64_t opening) {
    const std::lock_guard lock(m_ownerLock);
    if (m_use.opening == opening && m_removalClaimed)
        m_removed = true;
}

void CVantoCLSerPort::ClearRemoval() noexcept {
    const std::lock_guard lock(m_ownerLock);
    m_removalClaimed = false;
    m_removed = false;
}

bool CVantoCLSerPort::RestartTimer() {
    CInactivityTimer* timer = m_timer;
    return timer == nullptr || timer->Restart(m_autoCloseTimeout, &AutoClose, this);
}

bool CVantoCLSerPort::StopTimer() {
    CInactivityTimer* timer = m_timer;
    return timer == nullptr || timer->Stop();
}

void CVantoCLSerPort::AutoClose(void*, void* port) {
    if (port != nullptr)
        static_cast<CVantoCLSerPort*>(port)->CloseDueToInactivity();
}

// On the timer's thread, which wants the port's lock. Thread T whose access holds that lock restarts the timer, and
// waits for this callback to end: so it gives its close up as soon as anybody waits for it.
void CVantoCLSerPort::CloseDueToInactivity() {
    LogTrace(PortLog(), tracelog::kDebug, "AutoClosing CLPort '%s' due to inactivity.", m_portId);
    const CInactivityTimer& timer = *m_timer;
    Lock lock(m_lock, boost::defer_lock);
    while (!lock.try_lock_for(kGiveWayInterval)) {
        if (timer.IsBeingDeleted())
            break;
    }
    // The text stays as it is: logs are searched for it.
    if (!lock.owns_lock() || !Close(true))
        LogTrace(PortLog(), tracelog::kWarning, "Clould not AutoClose CLPort '%s'.", m_portId);
}

}  // namespace Vanto
