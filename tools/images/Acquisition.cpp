/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Acquisition: a running grab
 */
#include "images/Acquisition.h"

#include <fmt/format.h>

#include <algorithm>

#include "GenApi/GenApi.h"
#include "error/ExitCode.h"
#include "features/OpenDevice.h"

namespace tools {

namespace {

constexpr std::chrono::milliseconds kStep{50};  // how long Ctrl-C may have to wait

/// The library says why there is none.
Vanto::IStreamGrabber& GrabberOf(const OpenDevice& device) {
    static_cast<void>(device.Camera().StreamFeatures());
    return *device.Device().GetStreamGrabber(0);
}

}  // namespace

/**
 * \brief Start to grab
 * \param[in] device An open device
 * \param[in] buffers How many frames may wait to be taken, from 1
 * \throw GrabError The device has no frame grabber
 * \throw ToolError It refuses without a word
 * \throw GenericException The frame grabber refuses; std::bad_alloc when the buffers don't fit into the memory
 */
Acquisition::Acquisition(const OpenDevice& device, std::size_t buffers) : m_grabber(GrabberOf(device)) {
    m_grabber.Open();
    try {
        RegisterBuffers(buffers);
        m_grabber.PrepareGrab();
        m_prepared = true;
        QueueAll();
    } catch (...) {
        try {
            Finish();
        } catch (const GenICam::GenericException&) {
            // What refused the start is the error to tell.
        }
        throw;
    }
}

Acquisition::~Acquisition() {
    try {
        Finish();
    } catch (const GenICam::GenericException&) {
        // The device is closed next, which ends what is left.
    }
}

// The first buffer starts the grabber. What its plug-in says is the whole message, which may be nothing.
void Acquisition::QueueAll() {
    try {
        for (const Vanto::StreamBufferHandle handle : m_handles)
            m_grabber.QueueBuffer(handle);
    } catch (const GenICam::GenericException& error) {
        if (*error.GetDescription() != '\0')
            throw;
        throw ToolError("the frame grabber doesn't start, and its plug-in doesn't say why");
    }
}

void Acquisition::RegisterBuffers(std::size_t count) {
    const GenApi::CIntegerPtr payload = m_grabber.GetNodeMap()->GetNode("PayloadSize");
    m_payloadSize = static_cast<std::size_t>(std::max<std::int64_t>(payload->GetValue(), 1));
    for (; count != 0; --count) {
        m_memory.push_back(std::make_unique_for_overwrite<std::uint8_t[]>(m_payloadSize));
        m_handles.push_back(m_grabber.RegisterBuffer(m_memory.back().get(), m_payloadSize));
    }
}

/**
 * \brief Wait for the next frame
 * \return Nothing when none came in time, or when somebody asked to end meanwhile
 */
std::optional<Vanto::GrabResult> Acquisition::Next(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    Vanto::GrabResult result;
    while (!m_grabber.RetrieveResult(result)) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0 || Interruption::Requested())
            return std::nullopt;
        m_grabber.GetWaitObject().Wait(static_cast<std::uint32_t>(std::min(left, kStep).count()));
    }
    return result;
}

void Acquisition::QueueAgain(const Vanto::GrabResult& result) {
    m_grabber.QueueBuffer(result.Handle());
}

/**
 * \brief Stop, and give everything back; does nothing the second time
 * \throw GenericException The frame grabber could not be left as it was found
 */
void Acquisition::Finish() {
    if (!m_grabber.IsOpen())
        return;
    std::exception_ptr failure;
    try {
        if (m_prepared)
            m_grabber.FinishGrab();
        Vanto::GrabResult left;
        while (m_grabber.RetrieveResult(left)) {
        }
        for (const Vanto::StreamBufferHandle handle : m_handles)
            m_grabber.DeregisterBuffer(handle);
    } catch (const GenICam::GenericException&) {
        failure = std::current_exception();
    }
    m_prepared = false;
    m_handles.clear();
    m_grabber.Close();
    if (failure)
        std::rethrow_exception(failure);
}

}  // namespace tools
