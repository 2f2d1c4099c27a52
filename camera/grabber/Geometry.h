/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Size and pixels of the pictures that a camera sends
 */
#pragma once

#include <cstddef>
#include <cstdint>

namespace grabber {

/// Bytes of the largest picture that is made, the gaps between its lines included.
inline constexpr std::size_t kLargestPicture = std::size_t{1} << 31;

/// What the camera's nodes say; -1 for a node that it lacks.
struct CameraValues {
    std::int64_t width = -1;
    std::int64_t height = -1;
    std::int64_t pixelFormat = -1;
    std::int64_t pixelSize = -1;  ///< bits
};

/// A picture that can be made.
struct Geometry {
    std::uint32_t width = 0;   ///< pixels
    std::uint32_t height = 0;  ///< lines
    unsigned bytesPerPixel = 0;
    unsigned bits = 0;  ///< of a colour of a pixel

    std::size_t LineLength() const noexcept { return std::size_t{width} * bytesPerPixel; }
    std::size_t Size() const noexcept { return LineLength() * height; }
};

/// Throws std::invalid_argument for pictures that are too large or of an unknown kind.
Geometry MakeGeometry(const CameraValues& camera);

}  // namespace grabber
