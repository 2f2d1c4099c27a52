/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CameraState: an open device, shared by a camera and its features and streams
 */
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "CallbackList.h"
#include "SharedPort.h"
#include "os/LockName.h"
#include "vanto/CameraError.h"
#include "vanto/Device.h"
#include "vanto/StreamGrabber.h"
#include "vanto/WaitObject.h"

namespace Vanto {

class StreamCore;

/// What is known of a camera's removal; it outlives the device, whose callbacks may come late. Thread-safe.
struct RemovalEvent {
    std::atomic<bool> gone{false};
    WaitObjectEx signal = WaitObjectEx::Create();  // stays signalled
    std::shared_ptr<CallbackList> callbacks = std::make_shared<CallbackList>();

    void Fire();
    Subscription Add(const std::function<void()>& callback);
};

/// An open device. It is closed once, by Close or at the end, and destroyed when the last feature or stream that uses
/// it is gone: so none of them can be left behind with a pointer to nothing. Thread-safe.
class CameraState : public std::enable_shared_from_this<CameraState> {
public:
    explicit CameraState(const CDeviceInfo& record);
    ~CameraState();
    CameraState(const CameraState&) = delete;
    CameraState& operator=(const CameraState&) = delete;

    const std::string& Name() const noexcept { return m_name; }
    IVantoDevice& Device() const noexcept { return *m_device; }
    IStreamGrabber& Grabber() const;
    bool IsOpen() const noexcept { return m_open; }
    bool IsGone() const noexcept { return m_removal->gone; }
    RemovalEvent& Removal() const noexcept { return *m_removal; }

    void RequireOpen() const;
    void RequireThere() const;
    void Close();

    void SetStopCheck(std::function<bool()> check);
    void ThrowIfStopped() const;

    void BeginStream(const std::shared_ptr<StreamCore>& stream);
    void EndStream(const StreamCore* stream) noexcept;

private:
    void Open(const CDeviceInfo& record);

    std::shared_ptr<RemovalEvent> m_removal = std::make_shared<RemovalEvent>();
    std::string m_name;
    const std::shared_ptr<SharedPort> m_port;
    IVantoDevice* m_device = nullptr;
    std::atomic<bool> m_open{false};

    mutable std::mutex m_mutex;  // of what follows; held for moments
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "application's camera"};
    std::function<bool()> m_stopCheck;
    std::weak_ptr<StreamCore> m_stream;
    const StreamCore* m_streamKey = nullptr;
};

}  // namespace Vanto
