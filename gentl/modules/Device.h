/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Device: the host's view of an open camera
 */
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "discovery/CameraRecord.h"
#include "os/LockName.h"
#include "ports/Module.h"
#include "remote/OpenCamera.h"
#include "remote/RemotePort.h"
#include "stream/Stream.h"

namespace GenApi {
struct INodeMap;
}  // namespace GenApi

namespace gentl {

class Interface;

/// The value of an information command of a device, open or not.
Info DeviceInfo(const CameraRecord& record, DEVICE_ACCESS_STATUS status, DEVICE_INFO_CMD command);

/// Thread-safe.
class Device : public Module, public std::enable_shared_from_this<Device> {
public:
    Device(HandleTable& handles, std::shared_ptr<Interface> parent, Vanto::ITransportLayer& layer, CameraRecord record,
           bool readOnly);
    ~Device() override;

    /// To be called once, right after the construction: gives the camera's port its handle.
    void Begin();
    void Close() noexcept;

    const CameraRecord& Record() const noexcept { return m_record; }
    std::shared_ptr<Interface> Parent() const noexcept { return m_parent.lock(); }
    bool IsOpen() const;
    DEVICE_ACCESS_STATUS Status() const noexcept;
    Info GetInfo(DEVICE_INFO_CMD command) const { return DeviceInfo(m_record, Status(), command); }
    void* RemoteHandle() const;

    bool HasStream() const noexcept { return m_grabber != nullptr; }
    std::string StreamId() const { return m_record.id + "-Stream"; }
    std::shared_ptr<Stream> OpenStream(const std::string& id);

    PortFacts Facts() const override;
    void Read(std::uint64_t address, std::span<std::uint8_t> bytes) override;
    void Write(std::uint64_t address, std::span<const std::uint8_t> bytes) override;

protected:
    std::shared_ptr<EventQueue> QueueOf(EVENT_TYPE type) override;

private:
    void OnLoss();
    Acquisition::LockListener OnLock(GenApi::INodeMap& camera) const;
    std::vector<Feature> MakeFeatures();
    AddedFeatures MakeAdded();

    const std::weak_ptr<Interface> m_parent;
    const CameraRecord m_record;
    const bool m_readOnly;
    const std::shared_ptr<NoticeQueue> m_errors;
    const std::shared_ptr<NoticeQueue> m_moduleEvents;
    const std::shared_ptr<NoticeQueue> m_invalidated;
    std::shared_ptr<OpenCamera> m_camera;
    Vanto::IStreamGrabber* m_grabber = nullptr;
    std::shared_ptr<RemotePort> m_remote;

    mutable std::mutex m_mutex;  // T that finds the camera gone takes it, in the middle of whatever it does
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "GenTL device"};
    std::mutex m_opening;  // T that opens the stream holds it, for as long as the frame grabber takes
    [[no_unique_address]] const os::LockName m_openingName{&m_opening, "GenTL stream's opening"};
    bool m_isClosed = false;
    std::shared_ptr<Stream> m_stream;
};

}  // namespace gentl
