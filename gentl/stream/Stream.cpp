/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Stream: a device's images
 */
#include "stream/Stream.h"

#include <fmt/format.h>

#include "GenApi/GenApi.h"
#include "ports/DeviceEvents.h"
#include "ports/FeatureList.h"
#include "support/Identity.h"
#include "support/Log.h"

namespace gentl {

namespace {

[[noreturn]] void ThrowGrabberError(const GenICam::GenericException& error) {
    const char* const text = error.GetDescription();
    throw GenTLError(GC_ERR_IO, *text != '\0' ? text : "The frame grabber refuses, and doesn't say why");
}

}  // namespace

/**
 * \brief Open the stream grabber
 * \param[in] onLock Called after each start and stop, by whoever starts or stops; must not use the stream
 * \throw GenericException It can't be opened
 */
Stream::Stream(HandleTable& handles, std::shared_ptr<Device> device, std::shared_ptr<OpenCamera> camera,
               Vanto::IStreamGrabber& grabber, std::string id, Acquisition::LockListener onLock)
    : Module(handles),
      m_device(device),
      m_camera(std::move(camera)),
      m_grabber(grabber),
      m_id(std::move(id)),
      m_queue(std::make_shared<BufferQueue>()),
      m_errors(std::make_shared<NoticeQueue>(EVENT_ERROR)),
      m_moduleEvents(std::make_shared<NoticeQueue>(EVENT_MODULE)),
      m_acquisition(grabber, m_queue, std::move(onLock)) {
    m_grabber.Open();
    SetFeatures("TLDataStream", "StreamPort", MakeFeatures());
}

Stream::~Stream() {
    Close();
}

/// Stops, discards and revokes everything. The second time it does nothing.
void Stream::Close() noexcept {
    Retire();
    const std::lock_guard control(m_control);
    if (m_isClosed)
        return;
    m_isClosed = true;
    m_acquisition.Stop();
    m_isStarted = false;
    BufferQueue::Buffers buffers;
    {
        const std::lock_guard lock(m_queue->Mutex());
        m_queue->DiscardLocked();
        m_queue->InputToUnqueued();
        buffers = m_queue->Announced();
    }
    for (const auto& buffer : buffers) {
        Handles().Remove(*buffer);
        const std::lock_guard lock(m_queue->Mutex());
        m_queue->Revoke(*buffer);
    }
    // It forgets its buffers, and warns of those that are left: the consumer may close with all of them.
    for (const auto& buffer : buffers) {
        try {
            m_grabber.DeregisterBuffer(buffer->grabberHandle);
        } catch (const GenICam::GenericException& error) {
            LogTrace(LogCategory(), Vanto::tracelog::kWarning, "A buffer stays with the frame grabber: %s",
                     error.GetDescription());
        }
    }
    m_grabber.Close();
}

/// The camera is gone: says so to those who listen. Frames may still come from the frame grabber.
void Stream::TellLoss() {
    m_errors->Add(GC_ERR_IO, "The camera is gone");
    m_moduleEvents->Add(kDeviceLostEvent, "DeviceLost");
}

std::unique_lock<std::mutex> Stream::Control() {
    std::unique_lock control(m_control);
    if (m_isClosed)
        throw GenTLError(GC_ERR_INVALID_HANDLE, "The stream was closed");
    return control;
}

/**
 * \brief Announce memory of the consumer's
 * \throw GenTLError RESOURCE_IN_USE where the same memory was announced already
 */
void* Stream::Announce(void* base, std::size_t size, void* userPointer) {
    const auto control = Control();
    {
        const std::lock_guard lock(m_queue->Mutex());
        for (const auto& buffer : m_queue->Announced())
            if (buffer->Base() == base)
                throw GenTLError(GC_ERR_RESOURCE_IN_USE, "This memory was announced already");
    }
    return Add(std::make_shared<StreamBuffer>(base, size, userPointer));
}

void* Stream::AllocateAndAnnounce(std::size_t size, void* userPointer) {
    const auto control = Control();
    return Add(std::make_shared<StreamBuffer>(size, userPointer));
}

void* Stream::Add(std::shared_ptr<StreamBuffer> buffer) {
    buffer->grabberHandle = m_grabber.RegisterBuffer(buffer->Base(), buffer->Size());
    void* const handle = Handles().Add(buffer);
    const std::lock_guard lock(m_queue->Mutex());
    m_queue->Announce(std::move(buffer));
    return handle;
}

std::shared_ptr<StreamBuffer> Stream::Find(void* handle) const {
    auto buffer = Handles().Get<StreamBuffer>(handle);
    const std::lock_guard lock(m_queue->Mutex());
    if (!m_queue->IsAnnounced(*buffer))
        throw GenTLError(GC_ERR_INVALID_HANDLE, "The buffer is another stream's");
    return buffer;
}

void Stream::CheckBuffer(void* handle) const {
    Find(handle);
}

/// Forgets a buffer that is in no pool; throws BUSY for another one.
std::shared_ptr<StreamBuffer> Stream::Revoke(void* handle) {
    const auto control = Control();
    std::shared_ptr<StreamBuffer> buffer = Find(handle);
    {
        const std::lock_guard lock(m_queue->Mutex());
        if (buffer->State() != BufferState::kUnqueued)
            throw GenTLError(GC_ERR_BUSY, "The buffer is queued, or waits to be fetched");
        m_queue->Revoke(*buffer);
    }
    Handles().Remove(*buffer);
    m_grabber.DeregisterBuffer(buffer->grabberHandle);
    return buffer;
}

/// Puts a buffer into the input pool.
void Stream::Queue(void* handle) {
    const auto control = Control();
    const std::shared_ptr<StreamBuffer> buffer = Find(handle);
    {
        const std::lock_guard lock(m_queue->Mutex());
        if (buffer->State() != BufferState::kUnqueued)
            throw GenTLError(GC_ERR_RESOURCE_IN_USE, "The buffer is queued already, or waits to be fetched");
        m_queue->ToInput(*buffer);
    }
    if (!m_acquisition.IsRunning())
        return;
    try {
        m_acquisition.Feed();
    } catch (const GenICam::GenericException& error) {
        m_acquisition.TakeBack();
        ThrowGrabberError(error);
    }
}

/// Moves buffers between the pools; what the frame grabber has is taken from it first where the operation wants it.
void Stream::Flush(ACQ_QUEUE_TYPE operation) {
    if (operation < ACQ_QUEUE_INPUT_TO_OUTPUT || operation > ACQ_QUEUE_ALL_DISCARD)
        throw GenTLError(GC_ERR_NOT_IMPLEMENTED, fmt::format("There is no flush operation {}", operation));
    const auto control = Control();
    const bool emptiesInput = operation == ACQ_QUEUE_INPUT_TO_OUTPUT || operation == ACQ_QUEUE_ALL_DISCARD;
    if (m_acquisition.IsRunning() && emptiesInput)
        m_acquisition.TakeBack();
    {
        const std::lock_guard lock(m_queue->Mutex());
        MoveLocked(operation);
    }
    m_queue->Changed().notify_all();
    if (m_acquisition.IsRunning())
        m_acquisition.Feed();
}

void Stream::MoveLocked(ACQ_QUEUE_TYPE operation) {
    if (operation == ACQ_QUEUE_INPUT_TO_OUTPUT)
        m_queue->InputToOutput();
    if (operation == ACQ_QUEUE_ALL_DISCARD)
        m_queue->InputToUnqueued();
    if (operation == ACQ_QUEUE_OUTPUT_DISCARD || operation == ACQ_QUEUE_ALL_TO_INPUT ||
        operation == ACQ_QUEUE_ALL_DISCARD)
        m_queue->DiscardLocked();
    if (operation != ACQ_QUEUE_ALL_TO_INPUT && operation != ACQ_QUEUE_UNQUEUED_TO_INPUT)
        return;
    for (const auto& buffer : m_queue->Announced())
        if (buffer->State() == BufferState::kUnqueued)
            m_queue->ToInput(*buffer);
}

/// Starts the host's engine.
void Stream::Start(ACQ_START_FLAGS flags, std::uint64_t wanted) {
    if (flags != ACQ_START_FLAGS_DEFAULT)
        throw GenTLError(GC_ERR_NOT_IMPLEMENTED, fmt::format("There is no start flag {}", flags));
    if (wanted == 0)
        throw GenTLError(GC_ERR_INVALID_PARAMETER, "No frame was asked for");
    const auto control = Control();
    if (m_isStarted)
        throw GenTLError(GC_ERR_RESOURCE_IN_USE, "The acquisition was started already");
    {
        const std::lock_guard lock(m_queue->Mutex());
        if (m_queue->Announced().size() < kFewestBuffers)
            throw GenTLError(GC_ERR_INVALID_BUFFER, "No buffer was announced");
    }
    try {
        m_acquisition.Start(wanted);
    } catch (const GenICam::GenericException& error) {
        ThrowGrabberError(error);
    }
    m_isStarted = true;
}

/// Stops it. A frame is copied as a whole once it is there: there is never a part of one to kill.
void Stream::Stop(ACQ_STOP_FLAGS flags) {
    if (flags != ACQ_STOP_FLAGS_DEFAULT && flags != ACQ_STOP_FLAGS_KILL)
        throw GenTLError(GC_ERR_NOT_IMPLEMENTED, fmt::format("There is no stop flag {}", flags));
    const auto control = Control();
    if (!m_isStarted)
        throw GenTLError(GC_ERR_RESOURCE_IN_USE, "The acquisition is not running");
    m_isStarted = false;
    m_acquisition.Stop();
}

void* Stream::BufferAt(std::uint32_t index) const {
    const std::lock_guard lock(m_queue->Mutex());
    if (index >= m_queue->Announced().size())
        throw GenTLError(GC_ERR_INVALID_INDEX, fmt::format("There is no buffer {}", index));
    return m_queue->Announced()[index]->Handle();
}

Info Stream::GetBufferInfo(void* handle, BUFFER_INFO_CMD command) const {
    const std::shared_ptr<StreamBuffer> buffer = Find(handle);
    const std::lock_guard lock(m_queue->Mutex());
    return buffer->GetInfo(command);
}

Info Stream::GetSegmentInfo(void* handle, std::uint32_t index, SEGMENT_INFO_CMD command) const {
    const std::shared_ptr<StreamBuffer> buffer = Find(handle);
    if (index != 0)
        throw GenTLError(GC_ERR_INVALID_INDEX, "An ordinary buffer has one segment");
    const std::lock_guard lock(m_queue->Mutex());
    return buffer->GetSegmentInfo(command);
}

std::int64_t Stream::PayloadSize() const {
    return m_camera->Use([this](Vanto::IVantoDevice&) {
        const GenApi::CIntegerPtr payload = m_grabber.GetNodeMap()->GetNode("PayloadSize");
        return payload->GetValue();
    });
}

// Once all frames that were wanted are there, the engine has stopped by itself.
bool Stream::IsGrabbing() const {
    const std::lock_guard lock(m_queue->Mutex());
    return m_isStarted && !m_queue->IsDone();
}

Info Stream::GetInfo(STREAM_INFO_CMD command) const {
    switch (command) {
        case STREAM_INFO_ID:
            return m_id;
        case STREAM_INFO_NUM_ANNOUNCED:
        case STREAM_INFO_NUM_QUEUED:
        case STREAM_INFO_NUM_AWAIT_DELIVERY:
        case STREAM_INFO_PAYLOAD_SIZE:
        case STREAM_INFO_NUM_CHUNKS_MAX:
        case STREAM_INFO_BUF_ANNOUNCE_MIN:
        case STREAM_INFO_BUF_ALIGNMENT:
            return SizeValue{static_cast<std::size_t>(Number(command))};
        case STREAM_INFO_NUM_DELIVERED:
        case STREAM_INFO_NUM_UNDERRUN:
        case STREAM_INFO_NUM_STARTED:
            return static_cast<std::uint64_t>(Number(command));
        case STREAM_INFO_IS_GRABBING:
            return BoolValue{IsGrabbing()};
        case STREAM_INFO_DEFINES_PAYLOADSIZE:
            return BoolValue{true};
        case STREAM_INFO_TLTYPE:
            return std::string(kTransportType);
        case STREAM_INFO_FLOW_TABLE:
        case STREAM_INFO_GENDC_PREFETCH_DESCRIPTOR:
            throw GenTLError(GC_ERR_NO_DATA, "The stream has no GenDC data");
        default:
            ThrowUnknownCommand(command);
    }
}

std::int64_t Stream::Number(STREAM_INFO_CMD command) const {
    if (command == STREAM_INFO_PAYLOAD_SIZE)
        return PayloadSize();
    const std::lock_guard lock(m_queue->Mutex());
    switch (command) {
        case STREAM_INFO_NUM_DELIVERED:
            return static_cast<std::int64_t>(m_queue->Delivered());
        case STREAM_INFO_NUM_UNDERRUN:
            return static_cast<std::int64_t>(m_queue->Underrun());
        case STREAM_INFO_NUM_STARTED:
            return static_cast<std::int64_t>(m_queue->Started());
        case STREAM_INFO_NUM_ANNOUNCED:
            return static_cast<std::int64_t>(m_queue->Announced().size());
        case STREAM_INFO_NUM_QUEUED:
            return static_cast<std::int64_t>(m_queue->CountQueued());
        case STREAM_INFO_NUM_AWAIT_DELIVERY:
            return static_cast<std::int64_t>(m_queue->CountLocked());
        case STREAM_INFO_BUF_ANNOUNCE_MIN:
            return kFewestBuffers;
        case STREAM_INFO_BUF_ALIGNMENT:
            return 1;
        default:
            return 0;
    }
}

std::vector<Feature> Stream::MakeFeatures() {
    const auto number = [this](STREAM_INFO_CMD command) { return [this, command] { return Number(command); }; };
    FeatureList list;
    list.Category("StreamInformation")
        .Text("StreamID", "ID of the stream", [this] { return m_id; })
        .Enumeration("StreamType", "Kind of transport", TransportTypes(), [] { return 0; })
        .Category("BufferHandlingControl")
        .Integer("StreamAnnouncedBufferCount", "Buffers that are announced", number(STREAM_INFO_NUM_ANNOUNCED))
        .Integer("StreamAnnounceBufferMinimum", "Buffers that a start needs", number(STREAM_INFO_BUF_ANNOUNCE_MIN))
        .Enumeration(
            "StreamBufferHandlingMode", "Frames come in order; without a buffer a frame is lost",
            {{"OldestFirst", 0}, {"Default", 1}}, [this] { return m_handlingMode.load(); }, "",
            [this](std::int64_t value) { m_handlingMode = value; })
        .Enumeration("StreamAcquisitionModeSelector", "Older name of the buffer handling mode", {{"Default", 0}},
                     [] { return 0; })
        .Integer("StreamDeliveredFrameCount", "Frames since the last start", number(STREAM_INFO_NUM_DELIVERED))
        .Integer("StreamLostFrameCount", "Frames that found no buffer", number(STREAM_INFO_NUM_UNDERRUN))
        .Integer("StreamInputBufferCount", "Buffers in the input pool", number(STREAM_INFO_NUM_QUEUED))
        .Integer("StreamOutputBufferCount", "Buffers in the output queue", number(STREAM_INFO_NUM_AWAIT_DELIVERY))
        .Integer("StreamStartedFrameCount", "Frames that began", number(STREAM_INFO_NUM_STARTED))
        .Integer("StreamIsGrabbing", "1 while the host's engine runs", [this] { return std::int64_t{IsGrabbing()}; })
        .Integer("StreamChunkCountMaximum", "Chunks in a buffer", [] { return 0; })
        .Integer("StreamBufferAlignment", "Alignment of buffers in bytes", [] { return 1; })
        .Category("FrameGrabber")
        .Mirror(*m_grabber.GetNodeMap());
    return list.Take();
}

PortFacts Stream::Facts() const {
    return {.id = m_id,
            .vendor = kVendor,
            .model = kModel,
            .module = "TLDataStream",
            .version = ProducerVersion(),
            .portName = "StreamPort"};
}

// Some features are nodes of the stream grabber, which ends with the device.
void Stream::Read(std::uint64_t address, std::span<std::uint8_t> bytes) {
    m_camera->Use([&](Vanto::IVantoDevice&) { Module::Read(address, bytes); });
}

void Stream::Write(std::uint64_t address, std::span<const std::uint8_t> bytes) {
    m_camera->Use([&](Vanto::IVantoDevice&) { Module::Write(address, bytes); });
}

std::shared_ptr<EventQueue> Stream::QueueOf(EVENT_TYPE type) {
    switch (type) {
        case EVENT_NEW_BUFFER:
            return m_queue;
        case EVENT_ERROR:
            return m_errors;
        case EVENT_MODULE:
            return m_moduleEvents;
        default:
            return nullptr;
    }
}

}  // namespace gentl
