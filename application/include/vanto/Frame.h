/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Frame: one image of a camera
 */
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "vanto/CameraError.h"

namespace Vanto {

class FrameData;

/// What came of an image.
enum class FrameStatus {
    kComplete,
    kCut,    ///< a part of the image is missing: Size() says how many bytes came
    kFailed  ///< no usable data; Error() says why
};

/// One image, in the buffer it was put into. A handle: copies stand for the same image, and the buffer goes back to the
/// camera's queue when the last of them goes. It may outlive stream and camera. Const operations are thread-safe.
class VANTOAPPLICATION_API Frame {
public:
    /// What came of the image.
    FrameStatus Status() const noexcept;
    /// Whether all of the image is there.
    bool IsComplete() const noexcept { return Status() == FrameStatus::kComplete; }
    std::string Error() const;

    /// Counts from 1 within its stream, lost frames included where the frame grabber tells of them.
    std::uint64_t Number() const noexcept;
    /// How many frames were lost between this one and the one before.
    std::uint64_t Missed() const noexcept;
    /// The number that the frame grabber gave it; 0 for a failed one.
    std::uint32_t Tag() const noexcept;
    /// When it was taken from the queue, by this machine's clock.
    std::chrono::system_clock::time_point Time() const noexcept;

    /// The first byte of the image; good as long as a copy of this frame lives.
    const std::uint8_t* Data() const noexcept;
    /// For those who want to change the image in place.
    std::uint8_t* Data() noexcept;
    std::size_t Size() const noexcept;        ///< bytes of the image that are there
    std::uint32_t Width() const noexcept;     ///< pixels; 0 for a failed frame
    std::uint32_t Height() const noexcept;    ///< lines; 0 for a failed frame
    std::uint32_t OffsetX() const noexcept;   ///< pixels
    std::uint32_t OffsetY() const noexcept;   ///< lines
    std::int32_t PixelType() const noexcept;  ///< a value of EPixelType, -1 when unknown
    unsigned BitsPerPixel() const noexcept;   ///< that a pixel takes in memory; 0 when unknown
    std::string PixelFormat() const;          ///< "Mono8"; "0x0108..." for a type without a name, empty when unknown

    void Save(const std::string& path) const;

    /// Another holder of the same image.
    Frame(const Frame&);
    /// Lets its image go and holds that of another.
    Frame& operator=(const Frame&);
    /// Takes the image over; the other may only be destroyed or assigned to.
    Frame(Frame&&) noexcept;
    /// Lets its image go and takes another over.
    Frame& operator=(Frame&&) noexcept;
    ~Frame();

private:
    friend class StreamCore;
    explicit Frame(std::shared_ptr<FrameData> data) noexcept;

    std::shared_ptr<FrameData> m_data;
};

}  // namespace Vanto
