/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameFiles: the files that grabbed frames are saved in
 */
#include "images/FrameFiles.h"

#include <fmt/format.h>

#include "error/ExitCode.h"
#include "images/FrameCounts.h"
#include "output/Text.h"
#include "vanto/PixelTypeMapper.h"

namespace tools {

namespace {

std::optional<Vanto::EImageFileFormat> FormatFromWord(const std::string& word) {
    if (word == "png")
        return Vanto::EImageFileFormat::kPng;
    if (word == "pgm")
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

Vanto::ImageView ViewOf(const Vanto::GrabResult& result) {
    return {.data = result.Buffer(),
            .size = static_cast<std::size_t>(result.GetPayloadSize()),
            .pixelType = result.GetPixelType(),
            .width = static_cast<std::uint32_t>(result.GetWidth()),
            .height = static_cast<std::uint32_t>(result.GetHeight())};
}

}  // namespace

/**
 * \brief Choose format and folder; the folder is made where it is missing
 * \param[in] format One of kFrameFormats
 * \throw ToolError The folder can't be made
 */
FrameFiles::FrameFiles(const std::string& format, std::filesystem::path folder)
    : m_format(FormatFromWord(format)), m_word(format), m_folder((folder / "").lexically_normal()) {
    std::error_code error;
    if (m_format && !std::filesystem::create_directories(m_folder, error) && !std::filesystem::is_directory(m_folder))
        throw ToolError(fmt::format("the folder '{}' can't be made: {}", Printable(m_folder.string()),
                                    error ? error.message() : "there is something else under this name"));
}

/// Throws ToolError when images of this pixel type don't fit into the format.
void FrameFiles::CheckPixelType(Vanto::EPixelType pixelType) const {
    if (m_format && !Vanto::CanWriteImage(*m_format, pixelType))
        throw ToolError(fmt::format("images with the pixel format {} can't be saved as {}", NameOf(pixelType), m_word),
                        "--format raw saves every image; --set PixelFormat=Mono8 takes others.");
}

/**
 * \brief Save one frame; a cut one only as raw bytes, the other formats have no images with missing lines
 * \throw GenericException The file can't be written
 */
void FrameFiles::Save(const Vanto::GrabResult& result) {
    if (!m_format || (IsCut(result) && *m_format != Vanto::EImageFileFormat::kRaw))
        return;
    CheckPixelType(result.GetPixelType());
    const std::string name =
        fmt::format("frame_{:06}{}", m_count + 1, Vanto::GetFileExtension(*m_format, result.GetPixelType()));
    const std::filesystem::path path = (m_folder / name).lexically_normal();
    Vanto::WriteImage(path.string(), *m_format, ViewOf(result));
    m_last = path;
    if (m_count++ == 0)
        m_first = m_last;
}

}  // namespace tools
