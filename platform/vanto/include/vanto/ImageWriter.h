/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Writing images to files; the library VantoImage
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "vanto/PixelType.h"
#include "vanto/VantoTypes.h"

#ifdef VantoImage_EXPORTS
#define VANTOIMAGE_API GCBASE_EXPORT
#else
#define VANTOIMAGE_API GCBASE_IMPORT
#endif

namespace Vanto {

/// Formats of image files.
enum class EImageFileFormat {
    kPng,   ///< 8 or 16 bits; fewer significant bits are shifted up to 16, and how many they are is noted (sBIT)
    kPnm,   ///< binary PGM or PPM; values as they are
    kTiff,  ///< values as they are; compressed without loss
    kRaw    ///< the bytes as they are
};

/// An image in memory. Borrowed.
struct ImageView {
    const void* data = nullptr;                  ///<  the first byte
    std::size_t size = 0;                        ///< bytes
    EPixelType pixelType = PixelType_Undefined;  ///<  the type of its pixels
    std::uint32_t width = 0;                     ///< pixels
    std::uint32_t height = 0;                    ///< lines
    std::size_t pitch = 0;  ///< bytes from one line to the next; 0 when lines follow each other without a gap
};

/// What a file can tell of its image. Empty texts are left out.
struct ImageNotes {
    std::string camera;        ///<  its name for people
    std::string serialNumber;  ///<  the camera's
    std::string exposureTime;  ///<  with its unit: "500 us"
    std::string frameNumber;   ///<  within its grab
    std::string time;          ///<  when it came: "2024-05-17T12:30:00Z"
};

VANTOIMAGE_API bool CanWriteImage(EImageFileFormat format, EPixelType pixelType) noexcept;
VANTOIMAGE_API const char* GetFileExtension(EImageFileFormat format, EPixelType pixelType) noexcept;
VANTOIMAGE_API void WriteImage(const gcstring& path, EImageFileFormat format, const ImageView& image);
VANTOIMAGE_API void WriteImage(const gcstring& path, EImageFileFormat format, const ImageView& image,
                               const ImageNotes& notes);
VANTOIMAGE_API void AppendPnm(std::vector<std::uint8_t>& bytes, const ImageView& image);

}  // namespace Vanto
