/* SPDX-License-Identifier: Apache-2.0 */
/*
 * StreamCore: a running acquisition, and the buffers that go around in it
 */
#include "StreamCore.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "Base/GCException.h"
#include "GenApi/GenApi.h"
#include "vanto/TraceLog.h"

namespace Vanto {

namespace {

constexpr std::chrono::milliseconds kStep{50};  // how long a stop check may have to wait

std::size_t PayloadSizeOf(IStreamGrabber& grabber) {
    const GenApi::CIntegerPtr payload = grabber.GetNodeMap()->GetNode("PayloadSize");
    return static_cast<std::size_t>(std::max<std::int64_t>(payload->GetValue(), 1));
}

[[noreturn]] void ThrowGrabError(const CameraState& camera, const GenICam::GenericException& error) {
    camera.RequireThere();
    const std::string why = error.GetDescription();
    throw GrabError(fmt::format("{} can't take frames: {}", camera.Name(),
                                why.empty() ? "its frame grabber does not start and does not say why" : why),
                    camera.Name());
}

}  // namespace

StreamCore::StreamCore(std::shared_ptr<CameraState> camera, const StreamOptions& options)
    : m_options(options), m_camera(std::move(camera)), m_grabber(m_camera->Grabber()) {}

StreamCore::~StreamCore() {
    try {
        Stop();
    } catch (const std::exception& error) {
        tracelog::LogTrace(tracelog::LogGetCatID("Vanto.Camera"), tracelog::kWarning,
                           "A stream was not stopped as it should be: %s", error.what());
    }
}

/**
 * \brief Start to grab
 * \throw GrabError The frame grabber refuses, or the camera has a stream already
 * \throw CameraError The buffers don't fit into the memory
 */
void StreamCore::Start() {
    const std::lock_guard stopping(m_stopping);
    m_camera->BeginStream(shared_from_this());
    try {
        m_grabber.Open();
        m_payloadSize = PayloadSizeOf(m_grabber);
        m_grabber.PrepareGrab();
        m_prepared = true;
        QueueAll();
    } catch (const GenICam::GenericException& error) {
        GiveUpGrabber();
        ThrowGrabError(*m_camera, error);
    } catch (const std::bad_alloc&) {
        GiveUpGrabber();
        throw GrabError(fmt::format("{} can't take frames: {} buffers of {} bytes don't fit into the memory",
                                    m_camera->Name(), m_options.buffers, m_payloadSize),
                        m_camera->Name());
    }
}

// The first buffer that is queued starts the frame grabber.
void StreamCore::QueueAll() {
    const std::lock_guard lock(m_mutex);
    for (std::size_t count = std::max<std::size_t>(m_options.buffers, 1); count != 0; --count)
        AddBuffer();
    for (const auto& [handle, buffer] : m_queued)
        m_grabber.QueueBuffer(handle);
    m_running = true;
}

void StreamCore::AddBuffer() {
    FrameBuffer buffer;
    buffer.memory = std::unique_ptr<std::uint8_t[]>(new std::uint8_t[m_payloadSize]);
    buffer.size = m_payloadSize;
    buffer.handle = m_grabber.RegisterBuffer(buffer.memory.get(), buffer.size);
    const StreamBufferHandle handle = buffer.handle;
    m_queued.emplace(handle, std::move(buffer));
}

/// What the application holds must not make frames be lost: others take the place of its buffers.
void StreamCore::KeepQueueFilled() {
    try {
        while (m_queued.size() < std::max<std::size_t>(m_options.buffers, 1)) {
            AddBuffer();
            m_grabber.QueueBuffer(m_queued.rbegin()->first);
        }
    } catch (const std::bad_alloc&) {
        // Those that are there go on.
    }
}

bool StreamCore::IsRunning() const {
    const std::lock_guard lock(m_mutex);
    return m_running;
}

bool StreamCore::HasEndedLocked() const {
    return !m_running || (m_options.count != 0 && m_counts.delivered + m_counts.failed >= m_options.count);
}

bool StreamCore::HasEnded() const {
    const std::lock_guard lock(m_mutex);
    return HasEndedLocked();
}

StreamCounts StreamCore::Counts() const {
    const std::lock_guard lock(m_mutex);
    return m_counts;
}

/// The next frame if one is there.
std::optional<Frame> StreamCore::TryNext() {
    const std::lock_guard lock(m_mutex);
    try {
        GrabResult result;
        while (!HasEndedLocked() && m_grabber.RetrieveResult(result))
            if (auto frame = Taken(result))
                return frame;
        return std::nullopt;
    } catch (const GenICam::GenericException& error) {
        ThrowGrabError(*m_camera, error);
    }
}

/// A frame of a result; nothing for a buffer that was cancelled.
std::optional<Frame> StreamCore::Taken(const GrabResult& result) {
    auto node = m_queued.extract(result.handle);
    if (node.empty())
        return std::nullopt;
    if (result.Status() == Canceled) {
        m_grabber.DeregisterBuffer(result.handle);
        return std::nullopt;
    }
    m_held.insert(result.handle);
    auto data = std::make_shared<FrameData>(result, std::move(node.mapped()), weak_from_this());
    Count(*data);
    KeepQueueFilled();
    return Frame(std::move(data));
}

void StreamCore::Count(FrameData& frame) {
    if (frame.status == FrameStatus::kFailed) {
        ++m_counts.failed;
        m_tags.AddFailed();
        frame.number = ++m_number;
        return;
    }
    frame.missed = m_tags.Add(frame.result.frameTag);
    m_number += frame.missed + 1;
    frame.number = m_number;
    m_counts.missed += frame.missed;
    ++m_counts.delivered;
    m_counts.cut += frame.status == FrameStatus::kCut ? 1 : 0;
    m_counts.bytes += frame.result.payloadSize;
}

/**
 * \brief Wait for the next frame
 * \return Nothing when the stream has ended
 * \throw CameraTimeout None came in time
 * \throw CameraGone The camera went away, and the frames from before are taken
 * \throw Interrupted The stop check said so
 */
std::optional<Frame> StreamCore::Next(const Deadline& deadline) {
    WaitObjects events;
    events.Add(m_grabber.GetWaitObject());
    events.Add(m_stopped);
    events.Add(m_camera->Removal().signal);
    while (!HasEnded()) {
        if (auto frame = TryNext())
            return frame;
        m_camera->RequireThere();
        m_camera->ThrowIfStopped();
        auto step = kStep;
        if (deadline) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(*deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0)
                throw CameraTimeout(fmt::format("{}: no frame came in time. Is it triggered, and is its image cable "
                                                "plugged in?",
                                                m_camera->Name()),
                                    m_camera->Name());
            step = std::min(step, left);
        }
        events.WaitForAny(static_cast<std::uint32_t>(step.count()));
    }
    return std::nullopt;
}

/// Puts a buffer back into the queue, or away where there are more than enough or the stream has stopped.
void StreamCore::GiveBack(FrameBuffer buffer) noexcept {
    const std::lock_guard lock(m_mutex);
    const bool isRegistered = m_held.erase(buffer.handle) != 0;
    try {
        if (!m_running) {
            if (isRegistered)
                m_queued.emplace(buffer.handle, std::move(buffer));  // who stops puts it away
            return;
        }
        if (m_queued.size() >= 2 * std::max<std::size_t>(m_options.buffers, 1)) {
            m_grabber.DeregisterBuffer(buffer.handle);
            return;
        }
        const StreamBufferHandle handle = buffer.handle;
        m_queued.emplace(handle, std::move(buffer));
        m_grabber.QueueBuffer(handle);
    } catch (const std::exception& error) {
        tracelog::LogTrace(tracelog::LogGetCatID("Vanto.Camera"), tracelog::kWarning,
                           "A buffer can't be queued again: %s", error.what());
    }
}

/**
 * \brief Stop; does nothing the second time
 *
 * Frames that are held stay as they are. Waits of other threads end.
 *
 * \throw GrabError The frame grabber could not be left as it was found
 */
void StreamCore::Stop() {
    const std::lock_guard stopping(m_stopping);
    {
        const std::lock_guard lock(m_mutex);
        if (!m_running)
            return;
    }
    if (const auto failure = GiveUpGrabber(); failure && !m_camera->IsGone()) {
        try {
            std::rethrow_exception(failure);
        } catch (const GenICam::GenericException& error) {
            ThrowGrabError(*m_camera, error);
        }
    }
}

// Called by one thread at a time. From its first step on no other one uses the grabber.
std::exception_ptr StreamCore::GiveUpGrabber() noexcept {
    std::exception_ptr failure;
    const auto attempt = [&](auto step) {
        try {
            step();
        } catch (const std::exception&) {
            failure = failure ? failure : std::current_exception();
        }
    };
    {
        const std::lock_guard lock(m_mutex);
        m_running = false;
    }
    m_stopped.Signal();
    if (m_prepared) {
        // Taken out before the grab is finished: a finished grabber from which results are taken is prepared again.
        attempt([this] { m_grabber.CancelGrab(); });
        attempt([this] { TakeOutAll(); });
        attempt([this] { m_grabber.FinishGrab(); });
    }
    {
        // A thread that gives a frame back waits here until the grabber has forgotten its memory.
        const std::lock_guard lock(m_mutex);
        for (const auto& [handle, buffer] : m_queued)
            attempt([this, handle = handle] { m_grabber.DeregisterBuffer(handle); });
        for (const StreamBufferHandle handle : m_held)
            attempt([this, handle] { m_grabber.DeregisterBuffer(handle); });
        m_held.clear();
    }
    attempt([this] { m_grabber.Close(); });
    m_queued.clear();
    m_camera->EndStream(this);
    return failure;
}

void StreamCore::TakeOutAll() {
    GrabResult left;
    while (m_grabber.RetrieveResult(left)) {
    }
}

}  // namespace Vanto
