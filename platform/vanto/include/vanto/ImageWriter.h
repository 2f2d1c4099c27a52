/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Writing images to files; the library VantoImage
 */
#pragma once

#include <cstddef>
#include <cstdint>

#include "vanto/PixelType.h"
#include "vanto/VantoTypes.h"

namespace Vanto {

enum class EImageFileFormat {
    kPng,   ///< 8 or 16 bits; fewer significant bits are shifted up to 16, and how many they are is noted (sBIT)
    kPnm,   ///< binary PGM or PPM; values as they are
    kTiff,  ///< values as they are; uncompressed
    kRaw    ///< the bytes as they are
};

/// An image in memory. Borrowed.
struct ImageView {
    const void* data = nullptr;
    std::size_t size = 0;  ///< bytes
    EPixelType pixelType = PixelType_Undefined;
    std::uint32_t width = 0;   ///< pixels
    std::uint32_t height = 0;  ///< lines
    std::size_t pitch = 0;     ///< bytes from one line to the next; 0 when lines follow each other without a gap
};

bool CanWriteImage(EImageFileFormat format, EPixelType pixelType) noexcept;
const char* GetFileExtension(EImageFileFormat format, EPixelType pixelType) noexcept;
void WriteImage(const gcstring& path, EImageFileFormat format, const ImageView& image);

}  // namespace Vanto
