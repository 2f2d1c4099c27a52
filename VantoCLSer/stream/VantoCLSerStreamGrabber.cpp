/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The stream grabber of a Camera Link device
 */

#include "VantoCLSer/stream/VantoCLSerStreamGrabber.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "VantoCLSer/base/Log.h"
#include "VantoCLSer/stream/GrabberRegisters.h"
#include "VantoCLSer/stream/NodeMapLocks.h"
#include "VantoCLSer/stream/TLParamsLock.h"
#include "vanto/internal/VantoException.h"

extern const char kStreamGrabberDescription[];

namespace Vanto {

using GenICam::GenericException;

namespace {

constexpr char kSource[] = "VantoCLSer/VantoCLSerStreamGrabber";
constexpr std::size_t kReservedCallbacks = 10;

// Kinds of the own node callbacks.
constexpr std::uint32_t kAreaOfInterest = 1;
constexpr std::uint32_t kPixelSize = 2;

// Long enough for a copy into the largest buffer on a busy machine.
constexpr std::chrono::seconds kDeliveryTime{5};

// How long a register waits for a plug-in that is being stopped.
constexpr std::chrono::seconds kStopTime{2};

// The handle of what this thread registered last.
thread_local FgNodeCallbackHandle t_registered = 0;

}  // namespace

/**
 * \class CVantoCLSerStreamGrabber
 * \brief Moves frames from a frame-grabber plug-in into an application's buffers
 *
 * A buffer's handle goes round: QueueBuffer puts it into the queue of empty buffers, a delivered frame takes it out,
 * fills the buffer and puts it into the queue of filled ones, RetrieveResult takes it from there.
 */

CVantoCLSerStreamGrabber::CVantoCLSerStreamGrabber(const gcstring& deviceSpecific, IVantoDevice* device)
    : GenApi::CNodeMapRef("Device"),
      m_device(device),
      m_nodes(CameraMap()),
      m_resultData(CameraMap(), m_nodes),
      m_plugin(deviceSpecific),
      m_nodeCallbacks(
          [this](GenApi::INode* node) {
              return GenApi::make_NodeCallback(node, *this, &CVantoCLSerStreamGrabber::OnNodeChanged);
          },
          [this] { return m_state.IsStopOverdue(); }),
      m_deliveries({device, m_lock, m_state, m_buffers, m_resultData, m_waitObject}) {}

CVantoCLSerStreamGrabber::~CVantoCLSerStreamGrabber() {
    if (IsOpen()) {
        LogTrace(StreamLog(), tracelog::kWarning, "Stream still open on destruction");
        Close();
    }
    m_nodeCallbacks.DeregisterAll();
    m_resultData.Unwatch();
    // From here on the plug-in's thread D that delivers a frame is sent back at once. So D never waits for the grabber
    // lock, which this thread holds while the plug-in's end waits for D.
    m_deliveries.Shut();
    const Lock lock(m_lock);
    m_plugin.Release();
}

GenApi::INodeMap* CVantoCLSerStreamGrabber::CameraMap() const {
    return m_device != nullptr ? m_device->GetNodeMap() : nullptr;
}

/**
 * \brief Build the node map, bind the nodes and load the plug-in
 * \throw InvalidArgumentException There is no device
 * \throw RuntimeException The device-specific string names no plug-in, a node is missing, or the plug-in can't be
 *        loaded or refuses; what it says itself is the whole message
 * \throw GenericException The node maps can't be used
 */
void CVantoCLSerStreamGrabber::Initialize() {
    if (m_device == nullptr)
        throw VANTO_EXCEPTION(InvalidArgumentException, kSource)("Invalid device passed to streamgrabber.");
    m_plugin.CheckParameters();
    LoadDescription();
    AccessNodes();
    LoadPlugin();
    m_nodeCallbacks.Share();
}

void CVantoCLSerStreamGrabber::LoadDescription() {
    try {
        _LoadXMLFromString(kStreamGrabberDescription);
        m_mapName.Set(&_GetLock(), "stream's map");
        _Connect(this);
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Error parsing stream grabber XML (%s)", error.what());
        throw;
    }
}

void CVantoCLSerStreamGrabber::AccessNodes() {
    try {
        m_nodes.Bind(GetNodeMap());
        m_nodeCallbacks.Begin(GetNodeMap(), kReservedCallbacks);
        RegisterNodeCallback(CameraMap(), "Width", &OnCameraChanged, this, kAreaOfInterest);
        RegisterNodeCallback(CameraMap(), "Height", &OnCameraChanged, this, kAreaOfInterest);
        RegisterNodeCallback(CameraMap(), "PixelSize", &OnCameraChanged, this, kPixelSize);
        m_nodes.SetMaxBufferSize();
        m_resultData.Watch();
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Error accessing stream grabber or device XML nodes (%s)",
                 error.what());
        throw;
    }
}

// Without the lock: nobody else knows the stream grabber yet, and the plug-in's Init uses the node maps.
void CVantoCLSerStreamGrabber::LoadPlugin() {
    m_plugin.Load();
    m_plugin.Init(this);
}

/**
 * \brief Make ready for buffers; the device must be open
 * \throw LogicalErrorException The stream grabber is not closed
 * \throw RuntimeException The device is not open
 */
void CVantoCLSerStreamGrabber::Open() {
    const Lock lock(m_lock);
    m_state.CheckClosed("Open");
    LogTrace(StreamLog(), tracelog::kDebug, "Opening StreamGrabber");
    if (m_device == nullptr || !m_device->IsOpen()) {
        static constexpr char kText[] = "Device not open when opening stream grabber.";
        LogTrace(StreamLog(), tracelog::kError, kText);
        throw VANTO_EXCEPTION(RuntimeException, kSource)(kText);
    }
    m_state.Set(CGrabState::kOpen);
    LogTrace(StreamLog(), tracelog::kDebug, "StreamGrabber opened successfully");
}

/**
 * \brief Forget all buffers, in any state
 *
 * Buffers that wait for a frame stay queued, though nobody knows them any more, and the plug-in is not stopped. When it
 * returns no frame is being written into a buffer any more, unless a copy took several seconds.
 */
void CVantoCLSerStreamGrabber::Close() {
    {
        const Lock lock(m_lock);
        LogTrace(StreamLog(), tracelog::kDebug, "Closing StreamGrabber");
        WarnAboutLeftBuffers();
        m_buffers.ClearFilled();
        m_buffers.Clear();
        m_state.Set(CGrabState::kClosed);
        m_waitObject.Reset();
    }
    if (!m_deliveries.WaitUntilIdle(kDeliveryTime))
        LogTrace(StreamLog(), tracelog::kWarning,
                 "A frame is still being delivered %u s after the closing of the stream grabber. Do not free its "
                 "buffer yet.",
                 static_cast<unsigned>(kDeliveryTime.count()));
}

// Queued empty buffers hide the filled ones that they make Close forget: each message is only about what is still
// there.
void CVantoCLSerStreamGrabber::WarnAboutLeftBuffers() {
    if (!m_state.Is(CGrabState::kOpen))
        // The number is that of the buffers still registered, and stays it: readers of logs know it so.
        LogTrace(StreamLog(), tracelog::kWarning, "Invalid streamgrabber state (%i) in %s", m_buffers.Count(), "Close");
    if (!m_buffers.Empty().IsEmpty()) {
        LogTrace(StreamLog(), tracelog::kWarning, "Still %u empty bufferers in queue when calling Close().",
                 m_buffers.Empty().Size());
        m_buffers.ClearFilled();
    }
    if (!m_buffers.Filled().IsEmpty()) {
        LogTrace(StreamLog(), tracelog::kWarning,
                 "Still %u filled, unretrieved bufferers in queue when calling Close(). Use RetrieveResult() to remove "
                 "them before calling Close() to avoid this message.",
                 m_buffers.Filled().Size());
    }
    if (m_buffers.Count() != 0) {
        LogTrace(StreamLog(), tracelog::kWarning,
                 "Still %u bufferers registred when calling Close(). Use DeregisterBuffer() to avoid this message.",
                 m_buffers.Count());
    }
}

bool CVantoCLSerStreamGrabber::IsOpen() const {
    const Lock lock(m_lock);
    return !m_state.Is(CGrabState::kClosed);
}

/**
 * \brief Make a buffer known
 * \param[in] buffer The application's; must stand until it is deregistered or the stream grabber is closed
 * \param[in] size Bytes
 * \return The handle, unique in the process; the first one is 1
 * \throw RuntimeException The address is null
 * \throw LogicalErrorException The stream grabber is not open
 */
StreamBufferHandle CVantoCLSerStreamGrabber::RegisterBuffer(void* buffer, std::uint64_t size) {
    if (buffer == nullptr)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Invalid Buffer passed to RegisterBuffer");
    const Lock lock(m_lock);
    m_state.Check({CGrabState::kOpen, CGrabState::kPrepared, CGrabState::kReserved}, "RegisterBuffer");
    const StreamBufferHandle handle = m_buffers.Register(buffer, size).result.handle;
    LogTrace(StreamLog(), tracelog::kTrace, "Registereing Buffer (handle=%#x; Addr=%p; size=%u (%#x))", handle,
             static_cast<const void*>(buffer), size, size);
    return handle;
}

/**
 * \brief Forget a buffer that is in no queue; not to be used while frames are delivered
 * \return The buffer's address
 * \throw RuntimeException The handle is unknown or queued
 * \throw LogicalErrorException The stream grabber is not open
 */
void* CVantoCLSerStreamGrabber::DeregisterBuffer(StreamBufferHandle handle) {
    const Lock lock(m_lock);
    m_state.Check({CGrabState::kOpen, CGrabState::kPrepared, CGrabState::kReserved}, "DeregisterBuffer");
    const CStreamBuffers::BufferPtr buffer = m_buffers.Find(handle);
    if (!buffer)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Invalid Bufferhandle %p passed", handle);
    if (m_buffers.Empty().Contains(handle))
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Buffer h=%p waiting to be filled and cannot be deregistred now.", handle);
    if (m_buffers.Filled().Contains(handle))
        throw VANTO_EXCEPTION(RuntimeException, kSource)(
            "Buffer h=%p currently waiting to be retrieved and cannot be deregistred now", handle);
    void* const address = buffer->result.buffer;
    LogTrace(StreamLog(), tracelog::kTrace, "Deregistering Buffer (handle=%#x; Addr=%p; size=%u (%#x))", handle,
             static_cast<const void*>(address), buffer->size, buffer->size);
    m_buffers.Erase(handle);
    return address;
}

/**
 * \brief Lock the camera's parameters; the first queued buffer starts the acquisition
 * \throw LogicalErrorException The stream grabber is not in the open state
 * \throw GenericException The camera's parameters can't be locked
 */
void CVantoCLSerStreamGrabber::PrepareGrab() {
    const CNodeMapLocks nodeMaps(CameraMap(), GetNodeMap());
    const Lock lock(m_lock);
    m_state.Check({CGrabState::kOpen}, "PrepareGrab");
    SetTLParamsLocked(CameraMap(), true);
    m_state.Set(CGrabState::kPrepared);
}

/**
 * \brief Queue a buffer for a frame; the first one starts the acquisition
 * \param[in] context Arrives in the result
 * \throw RuntimeException The handle is unknown, or the plug-in can't start: the message is the plug-in's, and the
 *        buffer stays queued
 * \throw LogicalErrorException The grab is not prepared
 */
void CVantoCLSerStreamGrabber::QueueBuffer(StreamBufferHandle handle, const void* context) {
    std::uint64_t stops = 0;
    {
        const Lock lock(m_lock);
        m_state.CheckQueueing();
        const CStreamBuffers::BufferPtr buffer = m_buffers.Find(handle);
        if (!buffer)
            throw VANTO_EXCEPTION(RuntimeException, kSource)("Invalid Bufferhandle %p passed", handle);
        buffer->result.status = Queued;
        buffer->result.context = context;
        m_buffers.Queue(handle);
        if (!m_state.MayStart())
            return;
        stops = m_state.CountStops();
    }
    StartPlugin(stops);
}

// S starts the plug-in with the grabber lock held, and the plug-in may watch nodes then, for which it waits for the
// camera's node map; T has that locked, changes Width and waits for the own node map; U has that locked, reads
// PixelClockDetected and waits for the grabber lock. So S takes the node maps' locks first. Who has stopped the plug-in
// meanwhile has cancelled the buffer, too.
void CVantoCLSerStreamGrabber::StartPlugin(std::uint64_t stops) {
    const CNodeMapLocks nodeMaps(CameraMap(), GetNodeMap());
    m_resultData.Refresh();
    const Lock lock(m_lock);
    if (!m_state.MayStart() || m_state.CountStops() != stops)
        return;
    m_plugin.StartGrab();
    m_state.NoteStart();
    m_resultData.SetFollowing(true);
}

/**
 * \brief Stop the acquisition and give the buffers that wait for a frame back as cancelled results
 *
 * The grab stays prepared.
 *
 * \throw LogicalErrorException The grab is not prepared
 */
void CVantoCLSerStreamGrabber::CancelGrab() {
    const Lock lock = StopPlugin({CGrabState::kPrepared, CGrabState::kReserved}, "CancelGrab");
    if (m_buffers.CancelEmpty())
        m_waitObject.Signal();
}

// T stops the plug-in, which waits for its thread D, and D waits in a delivery for the grabber lock: so T does not hold
// it. It is held again when this returns.
CVantoCLSerStreamGrabber::Lock CVantoCLSerStreamGrabber::StopPlugin(std::initializer_list<CGrabState::State> accepted,
                                                                    const char* operation) {
    Lock lock(m_lock);
    m_state.Check(accepted, operation);
    m_state.BeginStop();
    lock.unlock();
    m_plugin.StopGrab();
    lock.lock();
    m_state.EndStop();
    m_resultData.SetFollowing(false);
    return lock;
}

/**
 * \brief Stop the acquisition, cancel what waits for a frame and unlock the camera's parameters
 *
 * Results are still there to be retrieved; retrieving the last one makes the grab count as prepared again.
 *
 * \throw LogicalErrorException The grab is not prepared
 * \throw GenericException The camera's parameters can't be unlocked; the grab is finished all the same
 */
void CVantoCLSerStreamGrabber::FinishGrab() {
    {
        const Lock lock = StopPlugin({CGrabState::kPrepared}, "FinishGrab");
        m_state.BeginFinish();
    }
    CancelGrabForFinish();
    const CNodeMapLocks nodeMaps(CameraMap(), GetNodeMap());
    const Lock lock(m_lock);
    m_state.EndFinish();
    SetTLParamsLocked(CameraMap(), false);
}

// Stops the plug-in once more.
void CVantoCLSerStreamGrabber::CancelGrabForFinish() {
    try {
        CancelGrab();
    } catch (const GenericException& error) {
        LogTrace(StreamLog(), tracelog::kWarning,
                 "Exception while calling CancelGrab from FinishGrab will be ignored (%s).", error.GetDescription());
    } catch (...) {
        const Lock lock(m_lock);
        m_state.AbandonFinish();
        throw;
    }
}

/**
 * \brief Take the oldest result
 * \param[out] result Left as it was when there is none
 * \return false when there is none
 * \throw RuntimeException The result's buffer is not known any more
 * \throw LogicalErrorException The stream grabber is not open
 */
bool CVantoCLSerStreamGrabber::RetrieveResult(GrabResult& result) {
    const Lock lock(m_lock);
    m_state.Check({CGrabState::kOpen, CGrabState::kPrepared, CGrabState::kReserved}, "RetrieveResult");
    if (m_buffers.Filled().IsEmpty()) {
        m_waitObject.Reset();
        return false;
    }
    const StreamBufferHandle handle = m_buffers.FirstFilled();
    const CStreamBuffers::BufferPtr buffer = m_buffers.Find(handle);
    // Where there is no memory for a copy, the result stays where it is.
    GrabResult copy = buffer ? buffer->result : GrabResult();
    m_buffers.TakeFilled();
    if (!buffer)
        throw VANTO_EXCEPTION(RuntimeException, kSource)("Buffer with handle %p not found", handle);
    result = std::move(copy);
    if (m_buffers.Filled().IsEmpty()) {
        m_waitObject.Reset();
        m_state.Set(CGrabState::kPrepared);
    }
    return true;
}

// Any thread of the plug-in; several at once.
bool CVantoCLSerStreamGrabber::FrameDelivered(const FgFrame* frame) noexcept {
    m_deliveries.Deliver(frame);
    return false;
}

/**
 * \brief Have a function called when a node changes
 * \see CNodeCallbackTable::Register
 */
void CVantoCLSerStreamGrabber::RegisterNodeCallback(GenApi::INodeMap* map, const char* nodeName,
                                                    FgNodeCallback function, void* context, std::uint32_t kind) {
    t_registered = m_nodeCallbacks.Register(map, nodeName, function, context, kind);
}

// The operation that may be overridden has no result.
FgNodeCallbackHandle CVantoCLSerStreamGrabber::RegisterForPlugin(GenApi::INodeMap* map, const char* nodeName,
                                                                 FgNodeCallback function, void* context,
                                                                 std::uint32_t kind) noexcept {
    t_registered = 0;
    try {
        RegisterNodeCallback(map, nodeName, function, context, kind);
    } catch (const std::exception& error) {
        LogTrace(StreamLog(), tracelog::kError, "Exception setting node callback. (%s)", error.what());
    }
    return std::exchange(t_registered, 0);
}

FgNodeCallbackHandle CVantoCLSerStreamGrabber::RegisterDeviceNodeCallback(const char* nodeName, FgNodeCallback function,
                                                                          void* context, std::uint32_t kind) noexcept {
    if (m_device == nullptr) {
        LogTrace(StreamLog(), tracelog::kError, "Invalid device pointer.");
        return 0;
    }
    return RegisterForPlugin(CameraMap(), nodeName, function, context, kind);
}

FgNodeCallbackHandle CVantoCLSerStreamGrabber::RegisterStreamNodeCallback(const char* nodeName, FgNodeCallback function,
                                                                          void* context, std::uint32_t kind) noexcept {
    return RegisterForPlugin(GetNodeMap(), nodeName, function, context, kind);
}

bool CVantoCLSerStreamGrabber::DeregisterNodeCallback(FgNodeCallbackHandle handle) noexcept {
    return m_nodeCallbacks.Deregister(handle);
}

// GenApi calls this with the lock of the node's map held.
void CVantoCLSerStreamGrabber::OnNodeChanged(GenApi::INode* node) {
    m_nodeCallbacks.Dispatch(node);
}

void CVantoCLSerStreamGrabber::OnCameraChanged(std::int64_t value, void* grabber, std::uint32_t kind) {
    CGrabberNodes& nodes = static_cast<CVantoCLSerStreamGrabber*>(grabber)->m_nodes;
    if (kind == kAreaOfInterest)
        nodes.CopyAreaOfInterest();
    else if (kind == kPixelSize)
        nodes.SetPixelSize(value);
}

/**
 * \brief Serve the registers of the own node map; a read that can't be served leaves the buffer as it is
 */
void CVantoCLSerStreamGrabber::Read(void* buffer, std::int64_t address, std::int64_t length) {
    const Lock lock = LockForRegisters();
    ReadGrabberRegister(m_plugin, buffer, address, length);
}

void CVantoCLSerStreamGrabber::Write(const void* buffer, std::int64_t address, std::int64_t length) {
    const Lock lock = LockForRegisters();
    WriteGrabberRegister(m_plugin, buffer, address, length);
}

// A plug-in that lets one in at a time would keep the caller waiting, with the lock held, for a stop that waits for a
// delivery that waits for the lock.
CVantoCLSerStreamGrabber::Lock CVantoCLSerStreamGrabber::LockForRegisters() {
    Lock lock(m_lock);
    m_state.WaitUntilStopped(lock, kStopTime);
    return lock;
}

}  // namespace Vanto
