/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameFiles: the files that grabbed frames are saved in
 */
#include "images/FrameFiles.h"

#include <fmt/format.h>

#include <vector>

#include "error/ExitCode.h"
#include "output/Json.h"
#include "output/Text.h"
#include "system/Files.h"
#include "vanto/PixelTypeMapper.h"

namespace tools {

namespace {

std::optional<Vanto::EImageFileFormat> FormatFromWord(const std::string& word) {
    if (word == "png")
        return Vanto::EImageFileFormat::kPng;
    if (word == "pgm" || word == "pnm")
        return Vanto::EImageFileFormat::kPnm;
    if (word == "tiff")
        return Vanto::EImageFileFormat::kTiff;
    if (word == "raw")
        return Vanto::EImageFileFormat::kRaw;
    return std::nullopt;
}

std::string NameOf(Vanto::EPixelType pixelType) {
    const char* const name = Vanto::CPixelTypeMapper::GetNameByPixelType(pixelType);
    return name != nullptr ? name : fmt::format("{:#x}", static_cast<std::uint32_t>(pixelType));
}

/// "frame_000001.png" and its like.
bool IsFrameName(const std::string& name) {
    constexpr std::string_view kPrefix = "frame_";
    constexpr std::size_t kDigits = 6;
    if (!name.starts_with(kPrefix))
        return false;
    const std::size_t end = name.find_first_not_of("0123456789", kPrefix.size());
    return end != std::string::npos && end >= kPrefix.size() + kDigits && name[end] == '.';
}

std::string SideFileText(const Vanto::ImageView& image, const Vanto::ImageNotes& notes) {
    constexpr std::uint64_t kBitsPerByte = 8;
    const std::uint64_t bits = std::uint64_t{image.width} * Vanto::BitPerPixel(image.pixelType);
    return ToText(Json{{"Width", image.width},
                       {"Height", image.height},
                       {"PixelFormat", NameOf(image.pixelType)},
                       {"Pitch", (bits + kBitsPerByte - 1) / kBitsPerByte},
                       {"Bytes", image.size},
                       {"Time", notes.time},
                       {"Camera", notes.camera},
                       {"SerialNumber", notes.serialNumber},
                       {"ExposureTime", notes.exposureTime},
                       {"FrameNumber", notes.frameNumber}}) +
           "\n";
}

}  // namespace

FrameImage ImageOf(const Vanto::Frame& frame) {
    return {.view = {.data = frame.Data(),
                     .size = frame.Size(),
                     .pixelType = static_cast<Vanto::EPixelType>(frame.PixelType()),
                     .width = frame.Width(),
                     .height = frame.Height()},
            .isCut = frame.Status() == Vanto::FrameStatus::kCut,
            .frame = frame};
}

/**
 * \brief Choose format and folder; the folder is made where it is missing
 * \param[in] format One of kFrameFormats, not "y4m"
 * \param[in] overwrite Whether frames of an earlier grab are removed from the folder
 * \throw ToolError The folder can't be made, or has frames of an earlier grab that are to stay
 */
FrameFiles::FrameFiles(const std::string& format, std::filesystem::path folder, bool overwrite)
    : m_format(FormatFromWord(format)), m_word(format), m_folder((folder / "").lexically_normal()) {
    if (!m_format)
        return;
    std::error_code error;
    if (!std::filesystem::create_directories(m_folder, error) && !std::filesystem::is_directory(m_folder))
        throw ToolError(fmt::format("the folder '{}' can't be made: {}", Printable(m_folder.string()),
                                    error ? error.message() : "there is something else under this name"));
    ClearFolder(overwrite);
}

// Two grabs of different lengths in one folder would look like one.
void FrameFiles::ClearFolder(bool overwrite) const {
    std::error_code error;
    std::vector<std::filesystem::path> earlier;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder, error))
        if (entry.is_regular_file(error) && IsFrameName(entry.path().filename().string()))
            earlier.push_back(entry.path());
    if (!earlier.empty() && !overwrite)
        throw ToolError(fmt::format("the folder '{}' has frames of an earlier grab", Printable(m_folder.string())),
                        "--overwrite removes them first; -o takes another folder, which is made where it is missing.");
    for (const std::filesystem::path& path : earlier)
        std::filesystem::remove(path, error);
}

/// Throws ToolError when images of this pixel type don't fit into the format.
void FrameFiles::CheckPixelType(Vanto::EPixelType pixelType) const {
    if (m_format && !Vanto::CanWriteImage(*m_format, pixelType))
        throw ToolError(fmt::format("images with the pixel format {} can't be saved as {}", NameOf(pixelType), m_word),
                        "--format raw saves every image; --set PixelFormat=Mono8 takes others.");
}

/**
 * \brief The file of the next frame
 * \return Nothing when it is not saved: a cut one only as raw bytes, other formats have no images with missing lines
 */
std::optional<FrameFile> FrameFiles::Next(const FrameImage& image) {
    if (!m_format || (image.isCut && *m_format != Vanto::EImageFileFormat::kRaw))
        return std::nullopt;
    CheckPixelType(image.view.pixelType);
    const std::string name =
        fmt::format("frame_{:06}{}", m_next, Vanto::GetFileExtension(*m_format, image.view.pixelType));
    return FrameFile{(m_folder / name).lexically_normal(), m_next++};
}

/**
 * \brief Write one frame. Any thread
 * \throw GenericException, ToolError The file can't be written
 */
void FrameFiles::Write(const FrameFile& file, const Vanto::ImageView& image, const Vanto::ImageNotes& notes) {
    Vanto::WriteImage(file.path.string(), *m_format, image, notes);
    if (*m_format == Vanto::EImageFileFormat::kRaw)
        WriteFile(std::filesystem::path(file.path).replace_extension(".json"), SideFileText(image, notes));
    const std::lock_guard guard(m_lock);
    if (m_count++ == 0 || file.number < m_first.number)
        m_first = file;
    if (file.number > m_last.number)
        m_last = file;
    m_bytes += image.size;
}

/// The file of the next frame, written at once.
void FrameFiles::Save(const FrameImage& image, const Vanto::ImageNotes& notes) {
    if (const std::optional<FrameFile> file = Next(image))
        Write(*file, image.view, notes);
}

std::uint64_t FrameFiles::Count() const {
    const std::lock_guard guard(m_lock);
    return m_count;
}
std::uint64_t FrameFiles::Bytes() const {
    const std::lock_guard guard(m_lock);
    return m_bytes;
}
std::filesystem::path FrameFiles::First() const {
    const std::lock_guard guard(m_lock);
    return m_first.path;
}
std::filesystem::path FrameFiles::Last() const {
    const std::lock_guard guard(m_lock);
    return m_last.path;
}

}  // namespace tools
