/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameStream: the frames of a camera, one after the other
 */
#include "vanto/FrameStream.h"

#include <utility>

#include "StreamCore.h"

namespace Vanto {

FrameStream::FrameStream(std::shared_ptr<StreamCore> core) noexcept : m_core(std::move(core)) {}

FrameStream::FrameStream(FrameStream&&) noexcept = default;
FrameStream& FrameStream::operator=(FrameStream&&) noexcept = default;

/// Stops; what goes wrong is logged. Frames that are held stay.
FrameStream::~FrameStream() = default;

/**
 * \brief Wait for the next frame
 * \return Nothing when the stream has ended: by Stop, by its count, or because the camera was closed
 * \throw CameraTimeout None came within the time of the stream's options
 * \throw CameraGone The camera went away
 * \throw Interrupted The camera's stop check said so
 */
std::optional<Frame> FrameStream::Next() {
    return Next(m_core->Options().timeout);
}

/// As Next, with a time of its own.
std::optional<Frame> FrameStream::Next(std::chrono::milliseconds timeout) {
    return m_core->Next(std::chrono::steady_clock::now() + timeout);
}

/// The next frame if one is there; waits for none.
std::optional<Frame> FrameStream::TryNext() {
    return m_core->TryNext();
}

StreamCounts FrameStream::Counts() const {
    return m_core->Counts();
}

bool FrameStream::IsRunning() const noexcept {
    return m_core->IsRunning();
}

/**
 * \brief Stop; does nothing the second time
 *
 * Waits of other threads end. Frames that are held stay.
 *
 * \throw GrabError The frame grabber could not be left as it was found
 */
void FrameStream::Stop() {
    m_core->Stop();
}

}  // namespace Vanto
