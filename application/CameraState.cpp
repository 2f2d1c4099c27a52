/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CameraState: an open device, shared by a camera and its features and streams
 */
#include "CameraState.h"

#include <fmt/format.h>

#include <algorithm>
#include <thread>
#include <utility>
#include <vector>

#include "Base/GCException.h"
#include "StreamCore.h"
#include "os/LockName.h"
#include "vanto/DeviceRemovalCallback.h"
#include "vanto/LogListener.h"
#include "vanto/TlFactory.h"

namespace Vanto {

namespace {

/// Destroys devices whose last user let go inside one of their own callbacks, on other threads: those wait for the end
/// of the callback. Ends with the process, before the factory does.
class Reaper {
public:
    static Reaper& Instance() {
        CTlFactory::GetInstance();
        static Reaper reaper;
        return reaper;
    }
    void Take(IVantoDevice* device, std::shared_ptr<SharedPort> port) {
        const std::lock_guard lock(m_mutex);
        m_threads.emplace_back([device, port = std::move(port)] { port->Retire(device); });
    }

private:
    ~Reaper() {
        for (std::thread& thread : m_threads)
            thread.join();
    }
    std::mutex m_mutex;
    [[no_unique_address]] const os::LockName m_mutexName{&m_mutex, "reaper of devices"};
    std::vector<std::thread> m_threads;
};

// Why the device has no stream grabber: the message about it ends with the plug-in's own words, if it had any.
std::string LastReason(const tracelog::LogRecorder& recorder) {
    std::string reason;
    for (const tracelog::LogMessage& message : recorder.GetMessages())
        if (message.level == tracelog::kInfo)
            reason = message.arguments.empty() ? message.text : message.arguments.back();
    return reason;
}

// It may go while its baud rate is changed, which opening survives, and only an open device takes a callback.
bool TellsOfRemoval(const tracelog::LogRecorder& recorder, const CDeviceInfo& record) {
    const std::string port = PropertyOf(record, "PortID");
    const auto messages = recorder.GetMessages();
    return std::any_of(messages.begin(), messages.end(), [&](const tracelog::LogMessage& message) {
        return message.format.rfind("Device removal for PortID", 0) == 0 && !message.arguments.empty() &&
               message.arguments.front() == port;
    });
}

/// Tells a port at the end that its device is closed, however that went.
class Closing {
public:
    explicit Closing(SharedPort& port) noexcept : m_port(port) {}
    ~Closing() { m_port.NoteClosed(); }
    Closing(const Closing&) = delete;
    Closing& operator=(const Closing&) = delete;

private:
    SharedPort& m_port;
};

}  // namespace

void RemovalEvent::Fire() {
    gone = true;
    signal.Signal();
    callbacks->Run();
}

/// Registers a callback that is called once; at once when the camera is gone already.
Subscription RemovalEvent::Add(const std::function<void()>& callback) {
    // Both this thread and the one that finds out may come to call it.
    const auto once = [callback, called = std::make_shared<std::atomic<bool>>(false)] {
        if (!called->exchange(true))
            callback();
    };
    Subscription subscription = callbacks->Add(once);
    if (gone)
        once();
    return subscription;
}

/**
 * \brief Open a device
 * \param[in] record A complete record, as enumeration gives it
 * \throw CameraGone It went away meanwhile
 * \throw CameraError It can't be opened; the text says why
 */
CameraState::CameraState(const CDeviceInfo& record)
    : m_name(record.GetFriendlyName().str()), m_port(SharedPort::Of(record)) {
    try {
        m_port->Open([&] { Open(record); });
    } catch (const CameraGone&) {
        m_port->Retire(m_device);
        throw;
    } catch (const std::exception& error) {
        m_port->Retire(m_device);
        const auto* const known = dynamic_cast<const GenICam::GenericException*>(&error);
        throw CameraError(
            fmt::format("{} can't be opened: {}", m_name, known != nullptr ? known->GetDescription() : error.what()),
            m_name);
    }
}

void CameraState::Open(const CDeviceInfo& record) {
    m_device = CTlFactory::GetInstance().CreateDevice(record);
    if (m_device == nullptr)
        throw RUNTIME_EXCEPTION("its transport layer does not make a device of it");
    const tracelog::LogRecorder recorder("Vanto.CLSer.Port:debug");
    m_device->Open();
    m_open = true;
    RegisterRemovalCallback(*m_device, [removal = std::weak_ptr(m_removal)](IVantoDevice*) {
        if (const auto event = removal.lock())
            event->Fire();
    });
    if (TellsOfRemoval(recorder, record))
        m_removal->Fire();
    RequireThere();
    if (m_device->GetNodeMap() == nullptr)
        throw RUNTIME_EXCEPTION("it has no features");
}

CameraState::~CameraState() {
    if (InsideCallback::IsSo())
        Reaper::Instance().Take(m_device, m_port);
    else
        m_port->Retire(m_device);
}

/// The stream grabber; throws GrabError with the reason when there is none.
IStreamGrabber& CameraState::Grabber() const {
    const tracelog::LogRecorder recorder("Vanto.CLSer.Device:info");
    if (IStreamGrabber* const grabber = m_device->GetStreamGrabber(0))
        return *grabber;
    const std::string reason = LastReason(recorder);
    throw GrabError(fmt::format("{} has no frame grabber{}{}. The DeviceSpecificString of its port in the port "
                                "configuration must name it, and the grabber's plug-in must be installed.",
                                m_name, reason.empty() ? "" : ": ", reason),
                    m_name);
}

void CameraState::RequireThere() const {
    if (IsGone())
        throw CameraGone(fmt::format("{} is gone. Is its cable plugged in, and is it switched on?", m_name), m_name);
}

void CameraState::RequireOpen() const {
    RequireThere();
    if (!IsOpen())
        throw CameraClosed(fmt::format("{} was closed", m_name), m_name);
}

/**
 * \brief Stop the stream and close the device; does nothing the second time
 * \throw CameraError The camera was not left as it was found; it is closed all the same
 */
void CameraState::Close() {
    if (!m_open.exchange(false))
        return;
    std::shared_ptr<StreamCore> stream;
    {
        const std::lock_guard lock(m_mutex);
        stream = m_stream.lock();
    }
    const Closing closing(*m_port);
    if (stream)
        stream->Stop();
    try {
        if (m_device->IsOpen())
            m_device->Close();
    } catch (const GenICam::GenericException& error) {
        if (!IsGone())
            throw CameraError(fmt::format("{} was not closed as it should be: {}", m_name, error.GetDescription()),
                              m_name);
    }
}

void CameraState::SetStopCheck(std::function<bool()> check) {
    const std::lock_guard lock(m_mutex);
    m_stopCheck = std::move(check);
}

/// Asks the program whether a wait shall go on; throws Interrupted when not.
void CameraState::ThrowIfStopped() const {
    std::function<bool()> check;
    {
        const std::lock_guard lock(m_mutex);
        check = m_stopCheck;
    }
    if (check && check())
        throw Interrupted(fmt::format("{}: interrupted", m_name), m_name);
}

void CameraState::BeginStream(const std::shared_ptr<StreamCore>& stream) {
    const std::lock_guard lock(m_mutex);
    if (m_streamKey != nullptr)
        throw GrabError(fmt::format("{} takes frames already; a camera has one stream at a time", m_name), m_name);
    m_stream = stream;
    m_streamKey = stream.get();
}

void CameraState::EndStream(const StreamCore* stream) noexcept {
    const std::lock_guard lock(m_mutex);
    if (m_streamKey != stream)
        return;
    m_stream.reset();
    m_streamKey = nullptr;
}

}  // namespace Vanto
