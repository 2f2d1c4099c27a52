/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One serial connection: the register space of the camera's node map
 */
#pragma once

#include <atomic>
#include <boost/thread/recursive_mutex.hpp>
#include <memory>
#include <mutex>

#include "CLProtocol/CLPort.h"
#include "GenApi/IPort.h"
#include "VantoCLSer/InactivityTimer.h"
#include "VantoCLSer/base/LibraryLoader.h"
#include "os/LockName.h"
#include "vanto/VantoTypes.h"

namespace GenApi {
struct INodeMap;
}

namespace Vanto {

/// The device that uses a port, as far as the port knows it.
class IPortOwner {
public:
    virtual bool IsOpen() const = 0;
    virtual GenApi::INodeMap* GetNodeMap() = 0;
    /// The camera is gone. \a opening is the number that SetOwner gave: the owner may have been closed meanwhile, and
    /// even opened again, and then has not lost anything.
    virtual void OnRemoval(std::uint64_t opening) noexcept = 0;

protected:
    virtual ~IPortOwner() = default;
};

/// One Camera Link serial port. Connects on demand, closes after inactivity, opens again on the next access.
/// Thread-safe.
class CVantoCLSerPort : public GenApi::IPort {
public:
    explicit CVantoCLSerPort(const gcstring& portId);
    virtual ~CVantoCLSerPort();
    CVantoCLSerPort(const CVantoCLSerPort&) = delete;
    CVantoCLSerPort& operator=(const CVantoCLSerPort&) = delete;

    bool Connect(const gcstring& deviceId);
    bool Reopen();
    bool Close(bool temporary) noexcept;
    bool HasXML(const gcstring& deviceId);
    gcstring GetXML(const gcstring& deviceId);
    gcstring Probe(const gcstring_vector* templates = nullptr);
    bool SetAutoCloseTimeout(std::uint32_t milliseconds);
    void SetDeviceName(const char* name);

    std::uint64_t SetOwner(std::shared_ptr<IPortOwner> owner);
    bool IsConnected() const noexcept { return m_connected; }
    std::uint32_t GetSupportedBaudRates();

    GenApi::EAccessMode GetAccessMode() const override { return m_accessMode; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override;
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override;

private:
    // A connection that fails to end is logged by whoever closes it, never thrown by an owning pointer.
    struct CLPortDeleter {
        void operator()(CLProtocol::CCLPort* port) const noexcept;
    };
    using CLPortPtr = std::unique_ptr<CLProtocol::CCLPort, CLPortDeleter>;
    using Lock = boost::unique_lock<boost::recursive_timed_mutex>;

    enum class QuickCheck { kSame, kGone, kUnknown };

    // Who used the port at a moment: the same device opened again is another opening.
    struct Use {
        std::shared_ptr<IPortOwner> owner;
        std::uint64_t opening = 0;
    };

    static void AutoClose(void* first, void* port);

    void CloseDueToInactivity();
    template <class Operation>
    void Access(const char* verb, const Operation& operation);
    template <class Operation>
    auto WithConnection(const gcstring& deviceId, const Operation& operation);
    void MakeHelpers();
    void ConnectLocked(const gcstring& deviceId);
    bool ReopenLocked(bool& gone);
    bool HasXMLLocked();
    gcstring GetXMLLocked();
    QuickCheck CheckOpenDevice(const Use& use, const gcstring& deviceId);
    gcstring ProbeDisconnected(const gcstring_vector& templates, bool& gone);
    gcstring ProbeLocked(const gcstring_vector& templates);
    gcstring ProbeTemplate(const gcstring& deviceIdTemplate, bool& stop);
    bool RestartTimer();
    bool StopTimer();
    void StoreConnection(CLPortPtr port);
    void DisconnectLocked() noexcept;
    void FireRemoval(const gcstring& deviceId, std::uint64_t opening);
    std::shared_ptr<IPortOwner> ClaimRemoval(std::uint64_t opening);
    void MarkRemoved(std::uint64_t opening);
    void ClearRemoval() noexcept;
    gcstring GetDeviceID() const;
    Use GetUse() const;
    std::uint64_t GetOpening() const;

    const GenApi::EAccessMode m_accessMode = GenApi::RW;
    mutable boost::recursive_timed_mutex m_lock;
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "port"};
    CLPortPtr m_clPort;  // null while the connection is closed
    std::atomic<bool> m_connected{
        false};                      // whether it is not null but for a probe, for those who can't wait for m_lock
    mutable std::mutex m_ownerLock;  // guards the following, never held while the owner is used
    [[no_unique_address]] const os::LockName m_ownerLockName{&m_ownerLock, "port's owner"};
    Use m_use;
    bool m_removalClaimed = false;  // somebody fires, or has fired, the removal of m_use
    std::unique_ptr<CLibraryLoader> m_driverLibrary;
    std::unique_ptr<CInactivityTimer> m_timerOwner;
    std::atomic<CInactivityTimer*> m_timer{nullptr};  // m_timerOwner's, for those who do not hold the lock
    const gcstring m_portId;
    gcstring m_deviceId;
    gcstring m_deviceName;
    gcstring m_xml;
    std::atomic<std::uint32_t> m_autoCloseTimeout{0};
    std::atomic<bool> m_removed{false};
};

struct PortCloser {
    void operator()(CVantoCLSerPort* port) const noexcept { port->Close(false); }
};

/// A connection of a port that is closed, not temporarily, where it is not released.
using PortConnection = std::unique_ptr<CVantoCLSerPort, PortCloser>;

}  // namespace Vanto
