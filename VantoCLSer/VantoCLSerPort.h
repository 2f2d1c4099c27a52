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
    virtual void OnRemoval() noexcept = 0;

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
    bool Close(bool temporary);
    bool HasXML(const gcstring& deviceId);
    gcstring GetXML(const gcstring& deviceId);
    gcstring Probe(const gcstring_vector* templates = nullptr);
    bool SetAutoCloseTimeout(std::uint32_t milliseconds);
    void SetDeviceName(const char* name);

    /// The device that is told when the camera is gone; null for none. A use in progress keeps the device alive.
    void SetOwner(std::shared_ptr<IPortOwner> owner);
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

    static void AutoClose(void* first, void* port);

    void CloseDueToInactivity();
    template <class Operation>
    void Access(const char* verb, const Operation& operation);
    template <class Operation>
    auto WithConnection(const gcstring& deviceId, const Operation& operation);
    void ConnectLocked(const gcstring& deviceId);
    bool ReopenLocked(bool& gone);
    bool HasXMLLocked();
    gcstring GetXMLLocked();
    QuickCheck CheckOpenDevice(const std::shared_ptr<IPortOwner>& owner, const gcstring& deviceId);
    gcstring ProbeLocked(const gcstring_vector& templates);
    gcstring ProbeTemplate(const gcstring& deviceIdTemplate, bool& stop);
    bool RestartTimer();
    bool StopTimer();
    void StoreConnection(CLPortPtr port);
    void DisconnectLocked();
    void FireRemoval(const gcstring& deviceId, const std::shared_ptr<IPortOwner>& owner);
    gcstring GetDeviceID() const;
    std::shared_ptr<IPortOwner> GetOwner() const;

    const GenApi::EAccessMode m_accessMode = GenApi::RW;
    mutable boost::recursive_timed_mutex m_lock;
    CLPortPtr m_clPort;  // null while the connection is closed
    std::atomic<bool> m_connected{
        false};                      // whether it is not null but for a probe, for those who can't wait for m_lock
    mutable std::mutex m_ownerLock;  // guards the pointer, never held while the owner is used
    std::shared_ptr<IPortOwner> m_owner;
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

}  // namespace Vanto
