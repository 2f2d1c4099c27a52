/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: an application that takes images as fast as they come
 */
#pragma once

#include <atomic>
#include <thread>

#include "vanto/StreamGrabber.h"

namespace test_support {

/// Drains the results and queues each buffer again, on a thread of its own, as long as it lives.
class RunningApplication {
public:
    explicit RunningApplication(Vanto::IStreamGrabber& grabber) : m_thread([this, &grabber] { Run(grabber); }) {}
    ~RunningApplication() {
        m_stop = true;
        m_thread.join();
    }
    RunningApplication(const RunningApplication&) = delete;
    RunningApplication& operator=(const RunningApplication&) = delete;

private:
    void Run(Vanto::IStreamGrabber& grabber) {
        while (!m_stop) {
            try {
                Vanto::GrabResult result;
                if (grabber.RetrieveResult(result))
                    grabber.QueueBuffer(result.handle);
                else
                    grabber.GetWaitObject().Wait(1);
            } catch (const GenICam::GenericException&) {
                // The grab has ended, or the buffer is forgotten.
            }
        }
    }

    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

}  // namespace test_support
