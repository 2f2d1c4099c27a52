/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Stream: a device's images
 */
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "os/LockName.h"
#include "ports/Module.h"
#include "remote/OpenCamera.h"
#include "stream/Acquisition.h"
#include "stream/BufferQueue.h"

namespace gentl {

class Device;

/// Thread-safe. T that starts, stops, flushes, queues or announces holds the control lock, and waits for the frame
/// grabber with it; fetching frames and asking for infos only take the queue's lock.
class Stream : public Module {
public:
    Stream(HandleTable& handles, std::shared_ptr<Device> device, std::shared_ptr<OpenCamera> camera,
           Vanto::IStreamGrabber& grabber, std::string id, Acquisition::LockListener onLock);
    ~Stream() override;

    void Close() noexcept;
    bool IsOpen() const noexcept { return !m_isClosed; }
    std::shared_ptr<Device> Parent() const noexcept { return m_device.lock(); }
    void TellLoss();

    void* Announce(void* base, std::size_t size, void* userPointer);
    void* AllocateAndAnnounce(std::size_t size, void* userPointer);
    std::shared_ptr<StreamBuffer> Revoke(void* handle);
    void Queue(void* handle);
    void Flush(ACQ_QUEUE_TYPE operation);
    void Start(ACQ_START_FLAGS flags, std::uint64_t wanted);
    void Stop(ACQ_STOP_FLAGS flags);

    void* BufferAt(std::uint32_t index) const;
    Info GetInfo(STREAM_INFO_CMD command) const;
    Info GetBufferInfo(void* handle, BUFFER_INFO_CMD command) const;
    Info GetSegmentInfo(void* handle, std::uint32_t index, SEGMENT_INFO_CMD command) const;
    void CheckBuffer(void* handle) const;

    PortFacts Facts() const override;
    void Read(std::uint64_t address, std::span<std::uint8_t> bytes) override;
    void Write(std::uint64_t address, std::span<const std::uint8_t> bytes) override;

    static constexpr std::size_t kFewestBuffers = 1;

protected:
    std::shared_ptr<EventQueue> QueueOf(EVENT_TYPE type) override;

private:
    std::unique_lock<std::mutex> Control();
    void* Add(std::shared_ptr<StreamBuffer> buffer);
    std::shared_ptr<StreamBuffer> Find(void* handle) const;
    void MoveLocked(ACQ_QUEUE_TYPE operation);
    std::vector<Feature> MakeFeatures();
    std::int64_t PayloadSize() const;
    std::int64_t Number(STREAM_INFO_CMD command) const;
    bool IsGrabbing() const;

    const std::weak_ptr<Device> m_device;
    const std::shared_ptr<OpenCamera> m_camera;
    Vanto::IStreamGrabber& m_grabber;
    const std::string m_id;
    const std::shared_ptr<BufferQueue> m_queue;
    const std::shared_ptr<NoticeQueue> m_errors;
    const std::shared_ptr<NoticeQueue> m_moduleEvents;

    mutable std::mutex m_control;
    [[no_unique_address]] const os::LockName m_controlName{&m_control, "GenTL stream"};
    std::atomic<bool> m_isClosed{false};
    std::atomic<bool> m_isStarted{false};
    std::atomic<std::int64_t> m_handlingMode{0};
    Acquisition m_acquisition;
};

}  // namespace gentl
