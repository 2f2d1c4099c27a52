/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Images as PNG
 */

#include <png.h>

#include <csetjmp>
#include <fstream>
#include <span>
#include <vector>

#include "image/ImageEncoders.h"

namespace Vanto {

namespace {

constexpr int kCompression = 1;  // images of cameras are noise to the better levels, which take several times as long

// One PNG file that is being written. libpng leaves by longjmp: the functions that call it hold nothing to destroy.
class PngFile {
public:
    explicit PngFile(const std::string& path) : m_file(path, std::ios::binary) {
        m_png = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, &OnError, &OnWarning);
        m_info = m_png != nullptr ? png_create_info_struct(m_png) : nullptr;
        if (m_info == nullptr)
            m_isRefused = true;
        else
            png_set_write_fn(m_png, this, &OnWrite, &OnFlush);
    }
    ~PngFile() { png_destroy_write_struct(&m_png, &m_info); }
    PngFile(const PngFile&) = delete;
    PngFile& operator=(const PngFile&) = delete;

    bool Begin(std::uint32_t width, std::uint32_t height, unsigned channels, unsigned bits,
               std::span<png_text> texts) noexcept {
        if (!IsFine() || setjmp(png_jmpbuf(m_png)) != 0)
            return false;
        const int type = channels == 1   ? PNG_COLOR_TYPE_GRAY
                         : channels == 3 ? PNG_COLOR_TYPE_RGB
                                         : PNG_COLOR_TYPE_RGB_ALPHA;
        png_set_IHDR(m_png, m_info, width, height, bits > 8 ? 16 : 8, type, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        const auto significant = static_cast<png_byte>(bits);
        const png_color_8 sBit{significant, significant, significant, significant, significant};
        png_set_sBIT(m_png, m_info, &sBit);
        png_set_compression_level(m_png, kCompression);
        // One filter for all rows: to try several on each takes most of the time.
        png_set_filter(m_png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
        if (!texts.empty())
            png_set_text(m_png, m_info, texts.data(), static_cast<int>(texts.size()));
        png_write_info(m_png, m_info);
        return true;
    }
    bool WriteRow(const std::uint8_t* row) noexcept {
        if (!IsFine() || setjmp(png_jmpbuf(m_png)) != 0)
            return false;
        png_write_row(m_png, row);
        return true;
    }
    bool End() noexcept {
        if (!IsFine() || setjmp(png_jmpbuf(m_png)) != 0)
            return false;
        png_write_end(m_png, m_info);
        m_file.close();
        return static_cast<bool>(m_file);
    }
    bool IsRefused() const noexcept { return m_isRefused; }  // by libpng, not by the file

private:
    bool IsFine() const noexcept { return !m_isRefused && m_file; }

    static PngFile& Of(png_structp png) { return *static_cast<PngFile*>(png_get_io_ptr(png)); }
    [[noreturn]] static void OnError(png_structp png, png_const_charp) {
        static_cast<PngFile*>(png_get_error_ptr(png))->m_isRefused = true;
        png_longjmp(png, 1);
    }
    static void OnWarning(png_structp, png_const_charp) {}
    static void OnWrite(png_structp png, png_bytep bytes, png_size_t count) {
        Of(png).m_file.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    }
    static void OnFlush(png_structp) {}

    std::ofstream m_file;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    bool m_isRefused = false;
};

// Keywords are those of the PNG standard where it has one. They point into the notes.
std::vector<png_text> TextsOf(const ImageNotes& notes) {
    std::vector<png_text> texts;
    const auto add = [&](const char* keyword, const std::string& value) {
        if (value.empty())
            return;
        png_text text{};
        text.compression = PNG_TEXT_COMPRESSION_NONE;
        text.key = const_cast<char*>(keyword);
        text.text = const_cast<char*>(value.c_str());
        text.text_length = value.size();
        texts.push_back(text);
    };
    add("Source", notes.camera);
    add("Serial Number", notes.serialNumber);
    add("Exposure Time", notes.exposureTime);
    add("Frame Number", notes.frameNumber);
    add("Creation Time", notes.time);
    return texts;
}

// PNG knows 8 and 16 bits, and white is their greatest value.
void PackRow(std::span<const std::uint16_t> samples, unsigned bits, std::vector<std::uint8_t>& packed) {
    packed.clear();
    for (const std::uint16_t sample : samples) {
        const unsigned shifted = static_cast<unsigned>(sample) << ((bits > 8 ? 16 : 8) - bits);
        if (bits > 8)
            packed.push_back(static_cast<std::uint8_t>(shifted >> 8));
        packed.push_back(static_cast<std::uint8_t>(shifted & 0xFF));
    }
}

}  // namespace

/**
 * \brief Write a PNG file with 8 or 16 bits a sample
 * \return Why the file can't be written
 */
std::error_code EncodePng(const std::string& path, SampleRows& rows, const ImageNotes& notes) {
    PngFile file(path);
    std::vector<png_text> texts = TextsOf(notes);
    bool isFine = file.Begin(rows.Width(), rows.Height(), rows.Channels(), rows.Bits(), texts);
    std::vector<std::uint8_t> packed;
    for (std::uint32_t row = 0; row < rows.Height() && isFine; ++row) {
        PackRow(rows.Read(row), rows.Bits(), packed);
        isFine = file.WriteRow(packed.data());
    }
    if (isFine && file.End())
        return {};
    return file.IsRefused() ? std::make_error_code(std::errc::not_supported) : WriteError();
}

}  // namespace Vanto
