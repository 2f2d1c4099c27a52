/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a frame-grabber plug-in is made of: the grabber object, its caller's FgCallee, the frame and the two exports.
 * docs/writing-a-frame-grabber-plugin.md tells how to use it.
 */
#pragma once

#include <cstddef>
#include <cstdint>

#ifdef _WIN32
#define VANTO_FG_EXPORT extern "C" __declspec(dllexport)
#else
#define VANTO_FG_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace Vanto {

/// One frame, as a plug-in hands it over. The layout is shared with separately built libraries: nothing may move.
struct FgFrame {
    std::uint32_t width;         ///< pixels
    std::int32_t lineCount;      ///< lines
    std::uint8_t reserved0[16];  ///< not read
    std::uint64_t lineLength;    ///< bytes of a line that are pixels
    std::uint64_t linePitch;     ///< bytes from the start of one line to the start of the next
    std::uint64_t reserved1;     ///< not read
    std::uint64_t dataSize;      ///< bytes of all pixels; no more are ever copied
    const void* data;            ///< first byte; the plug-in's, used only until FrameDelivered returns
    std::uint32_t frameTag;      ///< arrives in the grab result as it is
};

static_assert(sizeof(void*) == 8, "The layout is that of 64-bit systems");
static_assert(offsetof(FgFrame, width) == 0);
static_assert(offsetof(FgFrame, lineCount) == 4);
static_assert(offsetof(FgFrame, lineLength) == 24);
static_assert(offsetof(FgFrame, linePitch) == 32);
static_assert(offsetof(FgFrame, dataSize) == 48);
static_assert(offsetof(FgFrame, data) == 56);
static_assert(offsetof(FgFrame, frameTag) == 64);

/// Called with the new value of a node that changed, and with what was passed at registration.
using FgNodeCallback = void (*)(std::int64_t value, void* context, std::uint32_t kind);

/// Names a registered node callback; 0 stands for none.
using FgNodeCallbackHandle = std::uint64_t;

/// The stream grabber, as its plug-in sees it. The order of the operations is part of the interface. Any thread.
class FgCallee {
public:
    /// Copies the frame into the next queued buffer, or drops it when none is queued. Always false.
    virtual bool FrameDelivered(const FgFrame* frame) noexcept = 0;
    /// Watches a node of the camera. The function is called once at once, then at every change.
    virtual FgNodeCallbackHandle RegisterDeviceNodeCallback(const char* nodeName, FgNodeCallback function,
                                                            void* context, std::uint32_t kind) noexcept = 0;
    /// Ends a watch. True when it was the last one of its node; false, too, for an unknown handle.
    virtual bool DeregisterNodeCallback(FgNodeCallbackHandle handle) noexcept = 0;
    /// Watches a node of the stream grabber itself.
    virtual FgNodeCallbackHandle RegisterStreamNodeCallback(const char* nodeName, FgNodeCallback function,
                                                            void* context, std::uint32_t kind) noexcept = 0;

protected:
    ~FgCallee() = default;
};

/// What a plug-in makes. The order of the operations is part of the interface. After a false result the caller asks for
/// the text of the error.
class IFrameGrabber {
public:
    /// Called once, before anything else. \a callee stands until Shutdown has returned.
    virtual bool Init(const char* parameters, FgCallee* callee) = 0;
    /// Ends everything; the callee must not be used any more once it returns.
    virtual void Shutdown() = 0;
    /// Starts to deliver frames. Called with the stream grabber's lock held: it must not wait for a thread that
    /// delivers.
    virtual bool StartGrab() = 0;
    /// Returns when no frame will be delivered any more.
    virtual bool StopGrab() = 0;
    /// Length of the text in bytes, without a NUL. With a buffer it writes at most \a size bytes of the text, too.
    virtual std::uint32_t GetLastErrorText(char* buffer, std::uint32_t size) = 0;
    /// A number that the grabber knows, kFgPixelClockDetected for instance; 0 for what it does not know.
    virtual std::uint64_t GetValue(std::uint32_t parameter) = 0;
    /// Obeys kFgPoCLOff and kFgPoCLOn; for kFgPoCLQuery it returns 1 when power is on.
    virtual std::int32_t PoCLControl(std::uint32_t command) = 0;

protected:
    ~IFrameGrabber() = default;
};

/// GetValue: the pixel clock that the grabber sees, in Hz.
inline constexpr std::uint32_t kFgPixelClockDetected = 0xC10C;

/// PoCLControl: switch Power over Camera Link off or on; ask (1 means on).
inline constexpr std::uint32_t kFgPoCLOff = 0;
inline constexpr std::uint32_t kFgPoCLOn = 1;
inline constexpr std::uint32_t kFgPoCLQuery = 20;

/// The types of the two exports, and their names.
using FgCreateFunction = IFrameGrabber*(const char* parameters);
using FgDestroyFunction = void(IFrameGrabber* grabber);
inline constexpr char kFgCreateName[] = "CreateFrameGrabberObject";
inline constexpr char kFgDestroyName[] = "DestroyFrameGrabberObject";

}  // namespace Vanto
