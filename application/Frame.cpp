/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Frame: one image of a camera
 */
#include "vanto/Frame.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "Base/GCException.h"
#include "FrameData.h"
#include "StreamCore.h"
#include "base/Text.h"
#include "vanto/ImageWriter.h"
#include "vanto/PixelTypeMapper.h"

namespace Vanto {

namespace {

/// The format that the end of a file name asks for; throws CameraError for others.
EImageFileFormat FormatOf(const std::string& path) {
    constexpr std::array<std::pair<std::string_view, EImageFileFormat>, 7> kFormats{{{".png", EImageFileFormat::kPng},
                                                                                     {".pgm", EImageFileFormat::kPnm},
                                                                                     {".ppm", EImageFileFormat::kPnm},
                                                                                     {".pnm", EImageFileFormat::kPnm},
                                                                                     {".tif", EImageFileFormat::kTiff},
                                                                                     {".tiff", EImageFileFormat::kTiff},
                                                                                     {".raw", EImageFileFormat::kRaw}}};
    const std::size_t point = path.rfind('.');
    const std::string_view end = point == std::string::npos ? "" : std::string_view(path).substr(point);
    for (const auto& [extension, format] : kFormats)
        if (base::EqualsIgnoringCase(end, extension))
            return format;
    throw CameraError(fmt::format("'{}' names no image format; known are .png, .pgm, .ppm, .tiff and .raw", path));
}

}  // namespace

Frame::Frame(std::shared_ptr<FrameData> data) noexcept : m_data(std::move(data)) {}
Frame::Frame(const Frame&) = default;
Frame& Frame::operator=(const Frame&) = default;
Frame::Frame(Frame&&) noexcept = default;
Frame& Frame::operator=(Frame&&) noexcept = default;
Frame::~Frame() = default;

FrameStatus Frame::Status() const noexcept {
    return m_data->status;
}

/// Why a frame failed; empty for others.
std::string Frame::Error() const {
    return m_data->result.errorDescription.str();
}

std::uint64_t Frame::Number() const noexcept {
    return m_data->number;
}
std::uint64_t Frame::Missed() const noexcept {
    return m_data->missed;
}
std::uint32_t Frame::Tag() const noexcept {
    return m_data->result.frameTag;
}
std::chrono::system_clock::time_point Frame::Time() const noexcept {
    return m_data->time;
}
const std::uint8_t* Frame::Data() const noexcept {
    return m_data->buffer.memory.get();
}
std::uint8_t* Frame::Data() noexcept {
    return m_data->buffer.memory.get();
}
std::size_t Frame::Size() const noexcept {
    return m_data->status == FrameStatus::kFailed ? 0 : static_cast<std::size_t>(m_data->result.payloadSize);
}
std::uint32_t Frame::Width() const noexcept {
    return NotNegative(m_data->result.width);
}
std::uint32_t Frame::Height() const noexcept {
    return NotNegative(m_data->result.height);
}
std::uint32_t Frame::OffsetX() const noexcept {
    return NotNegative(m_data->result.offsetX);
}
std::uint32_t Frame::OffsetY() const noexcept {
    return NotNegative(m_data->result.offsetY);
}
std::int32_t Frame::PixelType() const noexcept {
    return m_data->result.pixelType;
}
unsigned Frame::BitsPerPixel() const noexcept {
    return BitPerPixel(m_data->result.GetPixelType());
}

std::string Frame::PixelFormat() const {
    const EPixelType type = m_data->result.GetPixelType();
    if (type == PixelType_Undefined)
        return {};
    const char* const name = CPixelTypeMapper::GetNameByPixelType(type);
    return name != nullptr ? name : fmt::format("{:#010x}", static_cast<std::uint32_t>(type));
}

/**
 * \brief Write the image into a file, whose name chooses the format: .png, .pgm, .ppm, .tiff or .raw
 *
 * The file is there as a whole or not at all. Formats but .raw take complete frames of unpacked types only.
 *
 * \throw CameraError The frame failed or is cut, the format does not take its pixels, or the file can't be written
 */
void Frame::Save(const std::string& path) const {
    const EImageFileFormat format = FormatOf(path);
    if (Status() == FrameStatus::kFailed)
        throw CameraError(fmt::format("frame {} has no image: {}", Number(), Error()));
    if (Status() == FrameStatus::kCut && format != EImageFileFormat::kRaw)
        throw CameraError(fmt::format("frame {} is cut, which only .raw files can hold", Number()));
    if (!CanWriteImage(format, m_data->result.GetPixelType()))
        throw CameraError(
            fmt::format("images with the pixel format {} can't be saved as '{}'; .raw takes all", PixelFormat(), path));
    try {
        ImageView image;
        image.data = Data();
        image.size = Size();
        image.pixelType = m_data->result.GetPixelType();
        image.width = Width();
        image.height = Height();
        WriteImage(path, format, image);
    } catch (const GenICam::GenericException& error) {
        throw CameraError(error.GetDescription());
    }
}

}  // namespace Vanto
