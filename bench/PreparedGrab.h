/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Images with the SDK's own classes: what everything above them is compared with
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "GenApi/GenApi.h"
#include "vanto/Device.h"
#include "vanto/StreamGrabber.h"

namespace bench {

/// A prepared grab of a camera, with buffers of its images' size.
class PreparedGrab {
public:
    static constexpr std::size_t kBuffers = 8;

    explicit PreparedGrab(Vanto::IVantoDevice& device) : m_grabber(*device.GetStreamGrabber(0)) {
        m_grabber.Open();
        const GenApi::CIntegerPtr size = m_grabber.GetNodeMap()->GetNode("PayloadSize");
        for (std::size_t index = 0; index < kBuffers; ++index) {
            m_memory.emplace_back(static_cast<std::size_t>(size->GetValue()));
            m_handles.push_back(m_grabber.RegisterBuffer(m_memory.back().data(), m_memory.back().size()));
        }
        m_grabber.PrepareGrab();
    }
    ~PreparedGrab() {
        m_grabber.FinishGrab();
        Drain();
        m_grabber.Close();
    }
    PreparedGrab(const PreparedGrab&) = delete;
    PreparedGrab& operator=(const PreparedGrab&) = delete;

    Vanto::IStreamGrabber* operator->() const { return &m_grabber; }

    void QueueAll() const {
        for (const Vanto::StreamBufferHandle handle : m_handles)
            m_grabber.QueueBuffer(handle);
    }
    /// Waits for so many results, and queues each buffer again.
    void Take(int frames) const {
        Vanto::GrabResult result;
        for (int taken = 0; taken < frames; ++taken) {
            while (!m_grabber.RetrieveResult(result))
                m_grabber.GetWaitObject().Wait(1000);
            m_grabber.QueueBuffer(result.Handle());
        }
    }
    void Cancel() const {
        m_grabber.CancelGrab();
        Drain();
    }

private:
    void Drain() const {
        for (Vanto::GrabResult left; m_grabber.RetrieveResult(left);) {
        }
    }

    Vanto::IStreamGrabber& m_grabber;
    std::vector<std::vector<std::uint8_t>> m_memory;
    std::vector<Vanto::StreamBufferHandle> m_handles;
};

}  // namespace bench
