/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Camera: a camera that is open as long as this object lives
 */
#include "vanto/Camera.h"

#include <fmt/format.h>

#include "Access.h"
#include "CameraChoice.h"
#include "FramePump.h"
#include "GenApi/GenApi.h"
#include "StreamCore.h"
#include "vanto/TraceLog.h"

namespace Vanto {

namespace {

void CloseQuietly(CameraState& camera) noexcept {
    try {
        camera.Close();
    } catch (const std::exception& error) {
        tracelog::LogTrace(tracelog::LogGetCatID("Vanto.Camera"), tracelog::kWarning, "%s", error.what());
    }
}

GenApi::IPort& PortOf(const CameraState& camera) {
    const GenApi::CPortPtr port(camera.Device().GetNodeMap()->GetNode("Device"));
    if (!port.IsValid())
        throw RUNTIME_EXCEPTION("the description has no port 'Device'");
    return *port;
}

}  // namespace

/**
 * \brief The cameras that are there, in the order of their ports
 *
 * Asks all enabled ports but those in use, which takes a second or two for each without a camera.
 *
 * \throw CameraError Looking for them is not possible; that there are none is no error
 */
std::vector<CameraRecord> Camera::List() {
    std::vector<CameraRecord> records;
    for (const CDeviceInfo& info : FindCameras())
        records.push_back(RecordOf(info));
    return records;
}

/**
 * \throw NoCamera There is none, or more than one
 * \throw CameraError It can't be opened
 */
Camera::Camera() : m_state(std::make_shared<CameraState>(ChooseOnly())) {}

/**
 * \throw NoCamera None is called so, or more than one; the text lists those that are there
 * \throw CameraError It can't be opened
 */
Camera::Camera(const std::string& name) : m_state(std::make_shared<CameraState>(ChooseNamed(name))) {}

/**
 * \throw NoCamera None has all these properties, or more than one has
 * \throw CameraError It can't be opened
 */
Camera::Camera(const CDeviceInfo& wanted) : m_state(std::make_shared<CameraState>(ChooseFitting(wanted))) {}

Camera::Camera(Camera&&) noexcept = default;

Camera& Camera::operator=(Camera&& other) noexcept {
    if (this == &other)
        return *this;
    if (m_state)
        CloseQuietly(*m_state);
    m_state = std::move(other.m_state);
    return *this;
}

/// Closes; what goes wrong is logged.
Camera::~Camera() {
    if (m_state)
        CloseQuietly(*m_state);
}

/// The name for people: "Marlow H2048 (24000001)".
const std::string& Camera::Name() const noexcept {
    return m_state->Name();
}

CameraRecord Camera::Record() const {
    return RecordOf(m_state->Device().GetDeviceInfo());
}

/// Whether it was not closed yet. A camera that is gone is open all the same.
bool Camera::IsOpen() const noexcept {
    return m_state->IsOpen();
}

/// Whether it went away since it was opened, as far as an access has found out.
bool Camera::IsGone() const noexcept {
    return m_state->IsGone();
}

/**
 * \brief Stop the stream, give the camera its old baud rate back and let its port go; does nothing the second time
 *
 * Features, streams and waits of other threads end with CameraClosed, or without a frame.
 *
 * \throw CameraError It was not left as it was found; it is closed all the same
 */
void Camera::Close() {
    m_state->Close();
}

/// The camera's features.
FeatureMap Camera::Features() const {
    m_state->RequireOpen();
    return FeatureMap(m_state, *m_state->Device().GetNodeMap());
}

/// The features of the stream, frame grabber among them; throws GrabError when there is no frame grabber.
FeatureMap Camera::StreamFeatures() const {
    m_state->RequireOpen();
    return FeatureMap(m_state, *m_state->Grabber().GetNodeMap());
}

/// The features of the transport layer, AutoCloseTimeout among them.
FeatureMap Camera::TransportFeatures() const {
    m_state->RequireOpen();
    return FeatureMap(m_state, *m_state->Device().GetTLNodeMap());
}

/**
 * \brief Set a selector for as long as the result lives; then it has its value from before again
 * \throw As Feature::Set
 */
Subscription Camera::Select(const std::string& selector, const FeatureValue& value) const {
    const Feature feature = (*this)[selector];
    const FeatureValue before = feature.Value();
    feature.SetValue(value);
    return Subscription([feature, before] {
        try {
            feature.SetValue(before);
        } catch (const std::exception& error) {
            tracelog::LogTrace(tracelog::LogGetCatID("Vanto.Camera"), tracelog::kWarning,
                               "A selector can't be put back: %s", error.what());
        }
    });
}

/**
 * \brief Start to take frames
 * \throw GrabError There is no frame grabber, it refuses, or the camera has a stream already
 */
FrameStream Camera::Stream(const StreamOptions& options) const {
    m_state->RequireOpen();
    auto core = std::make_shared<StreamCore>(m_state, options);
    core->Start();
    return FrameStream(std::move(core));
}

/// Starts a stream that ends behind \a count frames; throws as Stream does. 0 gives a stream that has no frame.
FrameStream Camera::Grab(std::uint64_t count) const {
    StreamOptions options;
    options.count = count;
    FrameStream stream = Stream(options);
    if (count == 0)
        stream.Stop();
    return stream;
}

/// Takes one frame; throws as Stream and FrameStream::Next do.
Frame Camera::GrabOne() const {
    StreamOptions options;
    options.count = 1;
    options.buffers = 2;
    if (auto frame = Stream(options).Next())
        return *frame;
    throw CameraClosed(fmt::format("{} was closed", m_state->Name()), m_state->Name());
}

/**
 * \brief Have something called for each frame, on a thread of its own, for as long as the result lives
 * \param[in] callback It must not destroy the camera
 * \param[in] options How the stream runs
 * \param[in] failed Called at most once, at the end, with what ended the stream but the end of the result: CameraGone,
 * or what a callback threw. Without it that is logged \throw As Stream
 */
Subscription Camera::OnFrame(std::function<void(Frame&)> callback, std::function<void(std::exception_ptr)> failed,
                             const StreamOptions& options) const {
    m_state->RequireOpen();
    auto core = std::make_shared<StreamCore>(m_state, options);
    core->Start();
    return Subscription([pump = std::make_shared<FramePump>(std::move(core), std::move(callback),
                                                            std::move(failed))]() mutable { pump.reset(); });
}

/**
 * \brief Read bytes as the camera has them, past description and caches
 * \param[in] address Of the first byte
 * \param[in] length Bytes, from 1
 */
FeatureBytes Camera::ReadRegisters(std::int64_t address, std::size_t length) const {
    return Access(*m_state, nullptr, [&] {
        FeatureBytes bytes(length);
        PortOf(*m_state).Read(bytes.data(), address, static_cast<std::int64_t>(length));
        return bytes;
    });
}

/// Writes all bytes in one access, past description and caches: Refresh drops what is cached.
void Camera::WriteRegisters(std::int64_t address, const FeatureBytes& bytes) const {
    Access(*m_state, nullptr,
           [&] { PortOf(*m_state).Write(bytes.data(), address, static_cast<std::int64_t>(bytes.size())); });
}

/**
 * \brief Have something called once when the camera goes away; at once when it is gone already
 *
 * It is called on whichever thread finds out, inside its access: note it and return. Closing the camera is allowed.
 */
Subscription Camera::OnRemoval(std::function<void()> callback) const {
    return m_state->Removal().Add(std::move(callback));
}

/**
 * \brief Say when waits shall end: a Ctrl-C, a button
 * \param[in] check Asked about every 50 ms on the thread that waits for a frame or a command, with no lock held; true
 *            ends the wait with Interrupted, and what it throws passes through. Null for none
 */
void Camera::SetStopCheck(std::function<bool()> check) const {
    m_state->SetStopCheck(std::move(check));
}

IVantoDevice& Camera::Device() const {
    return m_state->Device();
}

}  // namespace Vanto
