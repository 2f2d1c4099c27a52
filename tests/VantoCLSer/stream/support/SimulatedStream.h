/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A device with the simulated frame grabber, used as an application does
 */
#pragma once

#include "StreamTest.h"

namespace stream_test {

/// Device and stream grabber of the simulated frame grabber, both open.
class SimulatedStream {
public:
    explicit SimulatedStream(const std::string& parameters, const CameraXml& camera = CameraXml());

    Vanto::IStreamGrabber* operator->() { return m_grabber; }
    Vanto::IStreamGrabber& Grabber() { return *m_grabber; }
    OpenDevice& Device() { return m_device; }

    /// Registers buffers of the current payload size.
    void AddBuffers(std::size_t count);
    void QueueAll();
    /// Forgets the buffers' memory.
    void DropBuffers();
    /// Lets a triggered grab go on to this number of frames.
    void Trigger(std::uint64_t frames);
    std::uint64_t PayloadSize() const;
    /// Waits for the next result; fails the test when none comes.
    Vanto::GrabResult Next();
    /// The number of a frame whose checksum is right.
    static std::optional<std::uint64_t> NumberOf(const Vanto::GrabResult& result);

    std::vector<Vanto::StreamBufferHandle> handles;

private:
    scripted::ScopedVariable m_root;
    std::vector<std::unique_ptr<std::uint8_t[]>> m_memory;
    OpenDevice m_device;
    Vanto::IStreamGrabber* m_grabber = nullptr;
};

}  // namespace stream_test
