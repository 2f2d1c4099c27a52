/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A camera on a Camera Link serial port
 */
#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "GenApi/GenApi.h"
#include "VantoCLSer/RemovalCallbacks.h"
#include "VantoCLSer/VantoCLSerPort.h"
#include "os/LockName.h"
#include "vanto/VantoCLSerDeviceInfo.h"
#include "vanto/internal/VantoDevicePrivateImpl.h"

namespace Vanto {

class CVantoCLSerStreamGrabber;

/// Owns its node maps and its stream grabber, uses the port of its transport layer. Open and Close are the caller's to
/// serialise; everything else is thread-safe. A removal callback may close the device but must not destroy it.
class CVantoCLSerDevice : public CVantoDevicePrivateImpl<IVantoDevice>, public GenApi::CNodeMapRef, private IPortOwner {
public:
    /// Makes a device that lives until DestroySelf, and then until its last use by another thread has ended.
    static CVantoCLSerDevice* Create(const CDeviceInfo& info, CVantoCLSerPort& port);

    // IVantoDevice
    void Open(AccessModeSet mode) override;
    void Close() override;
    bool IsOpen() const override { return m_open; }
    AccessModeSet GetAccessMode() const override { return m_accessModes; }
    const CDeviceInfo& GetDeviceInfo() const override { return m_info; }
    std::uint32_t GetNumStreamGrabberChannels() override;
    IStreamGrabber* GetStreamGrabber(std::uint32_t index) override;
    void* GetReserved() override { return nullptr; }
    GenApi::INodeMap* GetNodeMap() override { return _GetNodeMap(); }
    GenApi::INodeMap* GetTLNodeMap() override;
    void* CreateChunkParser() override { return nullptr; }
    void DestroyChunkParser(void*) override {}
    void* CreateEventAdapter() override { return nullptr; }
    void DestroyEventAdapter(void*) override {}
    void* CreateSelfReliantChunkParser() override { return nullptr; }
    void DestroySelfReliantChunkParser(void*) override {}
    DeviceCallbackHandle RegisterRemovalCallback(const CDeviceRemovalCallback& callback) override;
    bool DeregisterRemovalCallback(DeviceCallbackHandle handle) override;

    // IVantoDevicePrivate
    void CreateNodeMapFromFile(const gcstring& path, const gcstring_vector& injected) override;
    void CreateNodeMapFromString(const gcstring& xml, const gcstring_vector& injected) override;
    void DestroySelf() override;

private:
    CVantoCLSerDevice(const CDeviceInfo& info, CVantoCLSerPort& port);
    ~CVantoCLSerDevice() override;

    // IPortOwner
    void OnRemoval(std::uint64_t opening) noexcept override;

    void CheckOpen() const;
    void NegotiateBaudRate(const gcstring& name);
    std::int64_t DisableUnsupportedRates(GenApi::IEnumeration& node, const gcstring& name);
    void SetInitialBaudRate(GenApi::IEnumeration& node, const gcstring& name, const gcstring& text);
    void SetFastestBaudRate(GenApi::IEnumeration& node, const gcstring& name, std::int64_t fastest);
    void EndOpening() noexcept;
    void RestoreBaudRate() noexcept;
    void LoadTLNodeMap();
    void FollowAutoCloseTimeout();
    void DeregisterAutoCloseCallback() noexcept;
    void OnAutoCloseTimeoutChanged(GenApi::INode* node);
    void MakeStreamGrabber(std::unique_lock<std::mutex>& lock);
    std::int32_t CountStreamGrabberChannels();
    bool CreateStreamGrabber();
    void MarkBadFirmware();
    void Teardown() noexcept;

    CVantoCLSerDeviceInfo m_info;
    AccessModeSet m_accessModes;
    GenApi::CNodeMapRef m_tlParams;
    [[no_unique_address]] os::LockName m_tlParamsName;
    [[no_unique_address]] os::LockName m_cameraName;
    CVantoCLSerPort& m_port;
    std::unique_ptr<CVantoCLSerStreamGrabber> m_streamGrabber;
    CRemovalCallbacks m_removalCallbacks;
    gcstring m_deviceName;
    GenApi::CallbackHandleType m_autoCloseCallback = 0;
    bool m_mustFollow = false;  // the auto-close timeout of a map that is loaded
    std::atomic<bool> m_open{false};
    std::int32_t m_channelCount = -1;  // not known yet
    std::int64_t m_oldBaudRate = 0;    // an entry's value; 0 is nothing to restore

    std::mutex m_tlParamsLock;  // guards the loading of m_tlParams, m_autoCloseCallback and m_mustFollow
    [[no_unique_address]] const os::LockName m_tlParamsLockName{&m_tlParamsLock, "TL map's making"};
    std::mutex m_streamGrabberLock;  // guards m_streamGrabber, m_channelCount and m_streamGrabberMaker
    [[no_unique_address]] const os::LockName m_streamGrabberLockName{&m_streamGrabberLock, "stream grabber's making"};
    std::condition_variable m_streamGrabberMade;
    std::thread::id m_streamGrabberMaker;       // nobody's unless the stream grabber is being made
    std::shared_ptr<CVantoCLSerDevice> m_self;  // what keeps the device alive until DestroySelf
};

}  // namespace Vanto
