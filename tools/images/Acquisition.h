/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Acquisition: a running grab
 */
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "vanto/Device.h"
#include "vanto/StreamGrabber.h"

namespace tools {

class OpenDevice;

/// Opens a device's stream grabber, queues buffers and grabs as long as it lives. Thread-bound; the device must
/// outlive it.
class Acquisition {
public:
    Acquisition(const OpenDevice& device, std::size_t buffers);
    ~Acquisition();
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    std::optional<Vanto::GrabResult> Next(std::chrono::milliseconds timeout);
    void QueueAgain(const Vanto::GrabResult& result);
    void Finish();
    /// Bytes of one frame as the stream grabber announces it.
    std::size_t PayloadSize() const noexcept { return m_payloadSize; }

private:
    void RegisterBuffers(std::size_t count);
    void QueueAll();

    Vanto::IStreamGrabber& m_grabber;
    std::size_t m_payloadSize = 0;
    std::vector<std::unique_ptr<std::uint8_t[]>> m_memory;
    std::vector<Vanto::StreamBufferHandle> m_handles;
    bool m_prepared = false;
};

}  // namespace tools
