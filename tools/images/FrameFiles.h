/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameFiles: the files that grabbed frames are saved in
 */
#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

#include "os/LockName.h"
#include "vanto/Frame.h"
#include "vanto/ImageWriter.h"

namespace tools {

/// An image where it lies; there it stays as long as this holds the frame.
struct FrameImage {
    Vanto::ImageView view;
    bool isCut = false;  ///< whether a part of it is missing
    std::optional<Vanto::Frame> frame;
};
FrameImage ImageOf(const Vanto::Frame& frame);

/// A file to be written, with its place in the order of frames.
struct FrameFile {
    std::filesystem::path path;
    std::uint64_t number = 0;
};

/// Writes frames into a folder, numbered from 1 in the order in which they come. Which file a frame gets is decided by
/// one thread; any threads write.
class FrameFiles {
public:
    FrameFiles(const std::string& format, std::filesystem::path folder, bool overwrite = false);

    void CheckPixelType(Vanto::EPixelType pixelType) const;
    std::optional<FrameFile> Next(const FrameImage& image);
    void Write(const FrameFile& file, const Vanto::ImageView& image, const Vanto::ImageNotes& notes);
    void Save(const FrameImage& image, const Vanto::ImageNotes& notes = {});

    std::uint64_t Count() const;
    std::uint64_t Bytes() const;  ///< of the images, not of the files
    std::filesystem::path First() const;
    std::filesystem::path Last() const;

private:
    void ClearFolder(bool overwrite) const;

    std::optional<Vanto::EImageFileFormat> m_format;  // none: nothing is saved
    std::string m_word;
    std::filesystem::path m_folder;
    std::uint64_t m_next = 1;
    mutable std::mutex m_lock;  // of what follows
    [[no_unique_address]] const os::LockName m_lockName{&m_lock, "frames' files"};
    std::uint64_t m_count = 0;
    std::uint64_t m_bytes = 0;
    FrameFile m_first;
    FrameFile m_last;
};

/// Words for the formats of files, "none" among them; pgm is another word for pnm.
inline constexpr const char* kFrameFormats[] = {"png", "pnm", "pgm", "tiff", "raw", "y4m", "none"};

}  // namespace tools
