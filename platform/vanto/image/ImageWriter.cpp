/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Writing images to files
 */

#include "vanto/ImageWriter.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "Base/GCException.h"
#include "image/ImageEncoders.h"
#include "os/Path.h"

namespace Vanto {

namespace {

std::error_code WriteRaw(const std::string& path, const ImageView& image) {
    std::ofstream file(path, std::ios::binary);
    file.write(static_cast<const char*>(image.data), static_cast<std::streamsize>(image.size));
    file.close();
    return file ? std::error_code() : WriteError();
}

std::error_code Encode(const std::string& path, EImageFileFormat format, const ImageView& image,
                       const ImageNotes& notes) {
    errno = 0;
    if (format == EImageFileFormat::kRaw)
        return WriteRaw(path, image);
    SampleRows rows(image);
    switch (format) {
        case EImageFileFormat::kPng:
            return EncodePng(path, rows, notes);
        case EImageFileFormat::kPnm:
            return EncodePnm(path, rows);
        default:
            return EncodeTiff(path, rows, notes);
    }
}

[[noreturn]] void Refuse(const std::string& path, const std::error_code& error) {
    throw RUNTIME_EXCEPTION("The image file '%s' can't be written: %s", path, error.message());
}

// Removes what was written so far unless it was kept.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const std::string& path) : m_path(path), m_unfinished(path + ".part") {}
    ~UnfinishedFile() {
        // A folder of that name is somebody else's.
        std::error_code ignored;
        if (!std::filesystem::is_directory(os::ToFilePath(m_unfinished), ignored))
            std::filesystem::remove(os::ToFilePath(m_unfinished), ignored);
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    const std::string& Path() const noexcept { return m_unfinished; }
    void Keep() {
        std::error_code error;
        std::filesystem::rename(os::ToFilePath(m_unfinished), os::ToFilePath(m_path), error);
        if (error)
            Refuse(m_path, error);
    }

private:
    const std::string m_path;
    const std::string m_unfinished;
};

}  // namespace

/**
 * \brief Whether images of a pixel type can be written in a format; raw takes every type
 */
bool CanWriteImage(EImageFileFormat format, EPixelType pixelType) noexcept {
    return format == EImageFileFormat::kRaw || FindSampleLayout(pixelType).has_value();
}

/**
 * \brief The usual extension of a file, with its point
 */
const char* GetFileExtension(EImageFileFormat format, EPixelType pixelType) noexcept {
    switch (format) {
        case EImageFileFormat::kPng:
            return ".png";
        case EImageFileFormat::kTiff:
            return ".tiff";
        case EImageFileFormat::kPnm: {
            const auto layout = FindSampleLayout(pixelType);
            return layout && layout->channels > 1 ? ".ppm" : ".pgm";
        }
        default:
            return ".raw";
    }
}

/**
 * \brief Write an image; a file of that name is replaced only when all of it was written
 * \param[in] path The file; nothing is appended to the name
 * \throw InvalidArgumentException The pixel type can't be written in that format, or the data are too short
 * \throw RuntimeException The file can't be written; the message says why
 * \context Reentrant
 */
void WriteImage(const gcstring& path, EImageFileFormat format, const ImageView& image) {
    WriteImage(path, format, image, {});
}

/**
 * \brief Write an image with what is known of it, as the other
 * \param[in] notes Kept by PNG (as texts) and TIFF (as fields); the other formats have no place for them
 * \context Reentrant
 */
void WriteImage(const gcstring& path, EImageFileFormat format, const ImageView& image, const ImageNotes& notes) {
    UnfinishedFile file(path.str());
    if (const std::error_code error = Encode(file.Path(), format, image, notes))
        Refuse(path.str(), error);
    file.Keep();
}

/**
 * \brief Append an image as binary PGM or PPM
 * \throw InvalidArgumentException The pixel type has no simple samples, or the data are too short
 * \context Reentrant
 */
void AppendPnm(std::vector<std::uint8_t>& bytes, const ImageView& image) {
    SampleRows rows(image);
    PassPnm(rows, [&](const char* piece, std::size_t count) {
        bytes.insert(bytes.end(), piece, piece + count);
        return true;
    });
}

}  // namespace Vanto
