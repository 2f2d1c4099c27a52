/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Frames on their way from a plug-in into the buffers that wait for them
 */
#pragma once

#include <boost/thread/recursive_mutex.hpp>
#include <chrono>

#include "VantoCLSer/stream/DeliveryGate.h"
#include "VantoCLSer/stream/GrabState.h"
#include "VantoCLSer/stream/ResultData.h"
#include "VantoCLSer/stream/StreamBuffers.h"
#include "vanto/Device.h"
#include "vanto/FgPlugin.h"
#include "vanto/WaitObject.h"

namespace Vanto {

/// What a stream grabber is made of, as far as its deliveries use it.
struct DeliveryParts {
    IVantoDevice* device;           ///< the camera
    boost::recursive_mutex& lock;   ///< the grabber lock; guards the state and the buffers
    CGrabState& state;              ///< whether frames are wanted
    CStreamBuffers& buffers;        ///< where frames go
    CResultData& resultData;        ///< what a result says about the camera
    AlertableWaitObject& isFilled;  ///< signalled when there is a result
};

/// The way of frames from a plug-in's threads into buffers. Its parts outlive it. Thread-safe.
class CFrameDelivery {
public:
    explicit CFrameDelivery(const DeliveryParts& parts) : m_parts(parts) {}

    void Deliver(const FgFrame* frame) noexcept;
    /// Waits until no delivery runs that has begun before; false when one still does.
    bool WaitUntilIdle(std::chrono::milliseconds timeout) { return m_gate.WaitUntilIdle(timeout); }
    /// Sends back all frames from now on, and waits for those that are being delivered.
    void Shut() { m_gate.Shut(); }

private:
    using Lock = CGrabState::Lock;

    void FillBuffer(const FgFrame& frame);
    CStreamBuffers::BufferPtr TakeEmptyBuffer(StreamBufferHandle& handle);
    bool ReadFrameData(GrabResult& result, const FgFrame& frame, const StreamBuffer& buffer);
    bool ReadResultData(GrabResult& result, const StreamBuffer& buffer);
    void PutFilledBuffer(StreamBufferHandle handle, StreamBuffer& buffer, GrabResult&& filled);

    const DeliveryParts m_parts;
    CDeliveryGate m_gate;
};

}  // namespace Vanto
