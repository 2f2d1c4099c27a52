/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A device with the simulated frame grabber, used as an application does
 */

#include "SimulatedStream.h"

#include "FrameMark.h"

namespace stream_test {

using namespace Vanto;

namespace {

constexpr std::uint32_t kPatience = 30000;  // milliseconds

}  // namespace

SimulatedStream::SimulatedStream(const std::string& parameters, const CameraXml& camera)
    : m_root("VANTO_ROOT", TreeOf(kSimulated)), m_device(camera, parameters) {
    m_grabber = m_device->GetStreamGrabber(0);
    if (m_grabber == nullptr)
        throw RUNTIME_EXCEPTION("There is no stream grabber");
    m_grabber->Open();
}

std::uint64_t SimulatedStream::PayloadSize() const {
    return static_cast<std::uint64_t>(GenApi::CIntegerPtr(m_grabber->GetNodeMap()->GetNode("PayloadSize"))->GetValue());
}

void SimulatedStream::AddBuffers(std::size_t count) {
    const std::uint64_t size = PayloadSize();
    for (; count != 0; --count) {
        m_memory.push_back(std::make_unique<std::uint8_t[]>(size));
        handles.push_back(m_grabber->RegisterBuffer(m_memory.back().get(), size));
    }
}

void SimulatedStream::QueueAll() {
    for (const StreamBufferHandle handle : handles)
        m_grabber->QueueBuffer(handle);
}

void SimulatedStream::DropBuffers() {
    handles.clear();
    m_memory.clear();
}

void SimulatedStream::Trigger(std::uint64_t frames) {
    GenApi::CIntegerPtr(m_grabber->GetNodeMap()->GetNode("DebugData1"))->SetValue(static_cast<std::int64_t>(frames));
}

GrabResult SimulatedStream::Next() {
    GrabResult result;
    while (!m_grabber->RetrieveResult(result)) {
        if (!m_grabber->GetWaitObject().Wait(kPatience)) {
            ADD_FAILURE() << "No frame comes";
            break;
        }
    }
    return result;
}

std::optional<std::uint64_t> SimulatedStream::NumberOf(const GrabResult& result) {
    return grabber::ReadFrameMark({static_cast<const std::uint8_t*>(result.buffer), result.payloadSize});
}

}  // namespace stream_test
