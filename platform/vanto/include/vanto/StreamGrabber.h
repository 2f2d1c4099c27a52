/* SPDX-License-Identifier: Apache-2.0 */
/*
 * IStreamGrabber: moves image buffers between an application and a frame grabber
 */
#pragma once

#include <cstdint>

#include "vanto/GrabResult.h"
#include "vanto/WaitObject.h"

namespace GenApi {
struct INodeMap;
}

namespace Vanto {

/// A device's stream grabber. The order of its operations is part of the interface; a virtual destructor among them
/// would move what an implementation puts behind them. Operations may be called from any thread.
class GCBASE_INTERFACE IStreamGrabber {
public:
    /// Makes it ready; throws RuntimeException when the device is not open, LogicalErrorException when it is open
    /// already.
    virtual void Open() = 0;
    /// Lets go of what is left; never throws. The grab should be finished and its buffers be deregistered before.
    virtual void Close() = 0;
    /// Whether it is open.
    virtual bool IsOpen() const = 0;
    /// The buffer stays the application's; it must stand until it is deregistered. \a size in bytes.
    virtual StreamBufferHandle RegisterBuffer(void* buffer, std::uint64_t size) = 0;
    /// Returns the buffer's address.
    virtual void* DeregisterBuffer(StreamBufferHandle handle) = 0;
    /// Locks the features that would change the size of images; throws LogicalErrorException unless it is open and not
    /// prepared.
    virtual void PrepareGrab() = 0;
    /// Stops the frame grabber, takes the buffers out of the queue as cancelled results, and unlocks the features.
    virtual void FinishGrab() = 0;
    /// Puts a buffer at the end of the queue; the first one starts the frame grabber, whose refusal is a
    /// RuntimeException. \a context comes back in the result.
    virtual void QueueBuffer(StreamBufferHandle handle, const void* context = nullptr) = 0;
    /// Stops the frame grabber and takes the buffers out of the queue as cancelled results; the next buffer starts it
    /// again.
    virtual void CancelGrab() = 0;
    /// False, with \a result as it was, when none is there.
    virtual bool RetrieveResult(GrabResult& result) = 0;
    /// Signalled while results are there.
    virtual WaitObject& GetWaitObject() = 0;
    /// Its own features, PayloadSize in bytes among them. The grabber owns them.
    virtual GenApi::INodeMap* GetNodeMap() = 0;

protected:
    ~IStreamGrabber() = default;
};

}  // namespace Vanto
