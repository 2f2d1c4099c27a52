/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Size and pixels of the pictures that a camera sends
 */

#include "Geometry.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>

namespace grabber {

namespace {

constexpr std::int64_t kLargestSide = 1 << 20;

struct PixelFormat {
    std::int64_t first;  // values of the Pixel Format Naming Convention (PFNC), first and last of a row
    std::int64_t last;
    unsigned bytesPerPixel;
    unsigned bits;
};

constexpr PixelFormat kPixelFormats[] = {
    {0x01080001, 0x01080001, 1, 8},   // Mono8
    {0x01100003, 0x01100003, 2, 10},  // Mono10
    {0x01100005, 0x01100005, 2, 12},  // Mono12
    {0x01100025, 0x01100025, 2, 14},  // Mono14
    {0x01100007, 0x01100007, 2, 16},  // Mono16
    {0x01080008, 0x0108000B, 1, 8},   // BayerGR8, RG8, GB8, BG8
    {0x0110000C, 0x0110000F, 2, 10},  // Bayer..10
    {0x01100010, 0x01100013, 2, 12},  // Bayer..12
    {0x01100109, 0x0110010C, 2, 14},  // Bayer..14
    {0x0110002E, 0x01100031, 2, 16},  // Bayer..16
    {0x02180014, 0x02180014, 3, 8},   // RGB8
};

// A camera may number its formats as it likes: then its pixel size decides.
PixelFormat FormatOf(const CameraValues& camera) {
    const auto* const found = std::find_if(
        std::begin(kPixelFormats), std::end(kPixelFormats),
        [&](const PixelFormat& row) { return camera.pixelFormat >= row.first && camera.pixelFormat <= row.last; });
    if (found != std::end(kPixelFormats))
        return *found;
    if (camera.pixelSize == 24)
        return {0, 0, 3, 8};
    if (camera.pixelSize < 1 || camera.pixelSize > 16)
        throw std::invalid_argument("The simulated grabber does not know the camera's pixel format " +
                                    std::to_string(camera.pixelFormat) + ".");
    return {0, 0, camera.pixelSize <= 8 ? 1U : 2U, static_cast<unsigned>(camera.pixelSize)};
}

std::uint32_t Side(std::int64_t value, const char* name) {
    if (value < 1 || value > kLargestSide)
        throw std::invalid_argument(std::string("The simulated grabber can't make pictures of the camera's ") + name +
                                    " " + std::to_string(value) + ".");
    return static_cast<std::uint32_t>(value);
}

}  // namespace

Geometry MakeGeometry(const CameraValues& camera) {
    const PixelFormat format = FormatOf(camera);
    const Geometry geometry{.width = Side(camera.width, "width"),
                            .height = Side(camera.height, "height"),
                            .bytesPerPixel = format.bytesPerPixel,
                            .bits = format.bits};
    if (geometry.Size() > kLargestPicture)
        throw std::invalid_argument("The camera's pictures are too large for the simulated grabber.");
    return geometry;
}

}  // namespace grabber
