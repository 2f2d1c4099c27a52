/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Acquisition: moves buffers between a stream's queue and the stream grabber
 */
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "os/LockName.h"
#include "stream/BufferQueue.h"
#include "vanto/StreamGrabber.h"

namespace gentl {

/// While it runs, its thread P takes results as they come, so that each frame has the time at which it came and counts
/// as delivered whether or not the consumer looks. Its operations are the caller's to serialise; P only meets them at
/// the lock of taking results.
class Acquisition {
public:
    /// Called after the camera's parameters were locked or unlocked.
    using LockListener = std::function<void()>;

    Acquisition(Vanto::IStreamGrabber& grabber, std::shared_ptr<BufferQueue> queue, LockListener onLock);
    ~Acquisition();
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    bool IsRunning() const noexcept { return m_thread.joinable(); }
    void Start(std::uint64_t wanted);
    void Feed();
    void TakeBack();
    void Stop();

private:
    void Run();
    void TakeResults();
    void Cancel();

    Vanto::IStreamGrabber& m_grabber;
    const std::shared_ptr<BufferQueue> m_queue;
    const LockListener m_onLock;
    std::mutex m_taking;  // whoever takes results from the grabber holds it
    [[no_unique_address]] const os::LockName m_takingName{&m_taking, "GenTL results"};
    std::vector<StreamBuffer*> m_canceled;
    Vanto::WaitObjectEx m_end;
    std::thread m_thread;
};

}  // namespace gentl
