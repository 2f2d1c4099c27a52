/* SPDX-License-Identifier: Apache-2.0 */
/*
 * StreamCore: a running acquisition, and the buffers that go around in it
 */
#pragma once

#include <chrono>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>

#include "CameraState.h"
#include "FrameData.h"
#include "base/FrameTags.h"
#include "os/LockName.h"
#include "vanto/FrameStream.h"

namespace Vanto {

/// A running acquisition. Frames know it weakly, so that they may outlive it. Thread-safe.
///
/// T takes, gives back or stops. Its mutex is held for calls that take the grabber's lock, never for one that takes a
/// node map's lock or waits for the frame grabber: Stop makes others keep out first and then stops without the mutex.
class StreamCore : public std::enable_shared_from_this<StreamCore> {
public:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;  // none: no end

    StreamCore(std::shared_ptr<CameraState> camera, const StreamOptions& options);
    ~StreamCore();
    StreamCore(const StreamCore&) = delete;
    StreamCore& operator=(const StreamCore&) = delete;

    void Start();
    std::optional<Frame> Next(const Deadline& deadline);
    std::optional<Frame> TryNext();
    void GiveBack(FrameBuffer buffer) noexcept;
    void Stop();

    const StreamOptions& Options() const noexcept { return m_options; }
    StreamCounts Counts() const;
    bool IsRunning() const;

private:
    bool HasEnded() const;
    bool HasEndedLocked() const;
    void QueueAll();
    void AddBuffer();
    void KeepQueueFilled();
    std::optional<Frame> Taken(const GrabResult& result);
    void Count(FrameData& frame);
    std::exception_ptr GiveUpGrabber() noexcept;
    void TakeOutAll();

    const StreamOptions m_options;
    const std::shared_ptr<CameraState> m_camera;
    IStreamGrabber& m_grabber;
    const WaitObjectEx m_stopped = WaitObjectEx::Create();
    std::size_t m_payloadSize = 0;

    std::recursive_mutex m_stopping;  // held by the thread that stops, which may meet itself in a removal callback
    [[no_unique_address]] const os::LockName m_stoppingName{&m_stopping, "stopping of a stream"};
    mutable std::mutex m_mutex;  // of what follows
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "application's stream"};
    bool m_running = false;
    bool m_prepared = false;
    std::map<StreamBufferHandle, FrameBuffer> m_queued;
    std::set<StreamBufferHandle> m_held;
    StreamCounts m_counts;
    std::uint64_t m_number = 0;
    base::FrameTags m_tags;
};

}  // namespace Vanto
