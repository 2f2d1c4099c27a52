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
class VANTOBASE_API IStreamGrabber {
public:
    virtual void Open() = 0;
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    /// The buffer stays the application's; it must stand until it is deregistered. \a size in bytes.
    virtual StreamBufferHandle RegisterBuffer(void* buffer, std::uint64_t size) = 0;
    /// Returns the buffer's address.
    virtual void* DeregisterBuffer(StreamBufferHandle handle) = 0;
    virtual void PrepareGrab() = 0;
    virtual void FinishGrab() = 0;
    virtual void QueueBuffer(StreamBufferHandle handle, const void* context = nullptr) = 0;
    virtual void CancelGrab() = 0;
    /// False, with \a result as it was, when none is there.
    virtual bool RetrieveResult(GrabResult& result) = 0;
    /// Signalled while results are there.
    virtual WaitObject& GetWaitObject() = 0;
    virtual GenApi::INodeMap* GetNodeMap() = 0;

protected:
    ~IStreamGrabber() = default;
};

}  // namespace Vanto
