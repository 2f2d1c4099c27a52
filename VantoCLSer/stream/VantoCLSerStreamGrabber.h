/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The stream grabber of a Camera Link device
 */
#pragma once

#include <boost/thread/recursive_mutex.hpp>
#include <initializer_list>

#include "GenApi/GenApi.h"
#include "VantoCLSer/stream/FrameDelivery.h"
#include "VantoCLSer/stream/FrameGrabberPlugin.h"
#include "VantoCLSer/stream/GrabState.h"
#include "VantoCLSer/stream/GrabberNodes.h"
#include "VantoCLSer/stream/NodeCallbackTable.h"
#include "VantoCLSer/stream/ResultData.h"
#include "VantoCLSer/stream/StreamBuffers.h"
#include "os/LockName.h"
#include "vanto/FgPlugin.h"
#include "vanto/StreamGrabber.h"

namespace Vanto {

/// Moves frames from a frame-grabber plug-in into an application's buffers. Initialize comes first, from one thread;
/// then everything is thread-safe. Locks are taken in this order: the camera's node map, the own node map, then the
/// grabber lock or that of the node callbacks. No node map is used while the grabber lock is held, unless the locks of
/// both node maps are held, too.
class CVantoCLSerStreamGrabber : public IStreamGrabber,
                                 public GenApi::CNodeMapRef,
                                 public GenApi::IPort,
                                 public FgCallee {
public:
    // Its slot is the one behind those of IStreamGrabber: it stands before all other virtual operations that are not.
    virtual void RegisterNodeCallback(GenApi::INodeMap* map, const char* nodeName, FgNodeCallback function,
                                      void* context, std::uint32_t kind);

    CVantoCLSerStreamGrabber(const gcstring& deviceSpecific, IVantoDevice* device);
    ~CVantoCLSerStreamGrabber() override;

    void Initialize();

    // IStreamGrabber
    void Open() override;
    void Close() override;
    bool IsOpen() const override;
    StreamBufferHandle RegisterBuffer(void* buffer, std::uint64_t size) override;
    void* DeregisterBuffer(StreamBufferHandle handle) override;
    void PrepareGrab() override;
    void FinishGrab() override;
    void QueueBuffer(StreamBufferHandle handle, const void* context) override;
    void CancelGrab() override;
    bool RetrieveResult(GrabResult& result) override;
    WaitObject& GetWaitObject() override { return m_waitObject; }
    GenApi::INodeMap* GetNodeMap() override { return _GetNodeMap(); }

    // GenApi::IPort
    GenApi::EAccessMode GetAccessMode() const override { return GenApi::RW; }
    void Read(void* buffer, std::int64_t address, std::int64_t length) override;
    void Write(const void* buffer, std::int64_t address, std::int64_t length) override;

    // FgCallee
    bool FrameDelivered(const FgFrame* frame) noexcept override;
    FgNodeCallbackHandle RegisterDeviceNodeCallback(const char* nodeName, FgNodeCallback function, void* context,
                                                    std::uint32_t kind) noexcept override;
    bool DeregisterNodeCallback(FgNodeCallbackHandle handle) noexcept override;
    FgNodeCallbackHandle RegisterStreamNodeCallback(const char* nodeName, FgNodeCallback function, void* context,
                                                    std::uint32_t kind) noexcept override;

    void OnNodeChanged(GenApi::INode* node);

private:
    using Lock = CGrabState::Lock;

    static void OnCameraChanged(std::int64_t value, void* grabber, std::uint32_t kind);

    void LoadDescription();
    void AccessNodes();
    void LoadPlugin();
    GenApi::INodeMap* CameraMap() const;

    void WarnAboutLeftBuffers();
    void StartPlugin(std::uint64_t stops);
    Lock StopPlugin(std::initializer_list<CGrabState::State> accepted, const char* operation);
    void CancelGrabForFinish();
    Lock LockForRegisters();
    FgNodeCallbackHandle RegisterForPlugin(GenApi::INodeMap* map, const char* nodeName, FgNodeCallback function,
                                           void* context, std::uint32_t kind) noexcept;

    IVantoDevice* const m_device;
    CGrabberNodes m_nodes;
    CResultData m_resultData;
    CFrameGrabberPlugin m_plugin;
    AlertableWaitObject m_waitObject{true, false};

    mutable boost::recursive_mutex m_lock;  // the grabber lock; guards the following
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "grabber"};
    [[no_unique_address]] os::LockName m_mapName;
    CGrabState m_state;
    CStreamBuffers m_buffers;

    CNodeCallbackTable m_nodeCallbacks;
    CFrameDelivery m_deliveries;
};

}  // namespace Vanto
