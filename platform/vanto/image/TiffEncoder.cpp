/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Images as TIFF
 */

#include <tiffio.h>

#include <memory>
#include <vector>

#include "image/ImageEncoders.h"

namespace Vanto {

namespace {

struct TiffCloser {
    void operator()(TIFF* tiff) const noexcept { TIFFClose(tiff); }
};
using TiffFile = std::unique_ptr<TIFF, TiffCloser>;

// The library would print; what matters are the results of its functions.
int StaySilent(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

TiffFile OpenTiff(const std::string& path) {
    const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                   &TIFFOpenOptionsFree);
    if (options == nullptr)
        return nullptr;
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &StaySilent, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &StaySilent, nullptr);
    return TiffFile(TIFFOpenExt(path.c_str(), "w", options.get()));
}

bool SetFields(TIFF* tiff, const SampleRows& rows) {
    const unsigned channels = rows.Channels();
    bool isFine = TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, rows.Width()) != 0;
    isFine = isFine && TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, rows.Height()) != 0;
    isFine = isFine && TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels) != 0;
    isFine = isFine && TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, rows.Bits() > 8 ? 16 : 8) != 0;
    isFine = isFine && TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) != 0;
    isFine = isFine && TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW) != 0;
    // Neighbours are alike: their differences are what compresses.
    isFine = isFine && TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL) != 0;
    isFine = isFine && TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0)) != 0;
    isFine = isFine && TIFFSetField(tiff, TIFFTAG_MAXSAMPLEVALUE, (1u << rows.Bits()) - 1) != 0;
    isFine = isFine &&
             TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, channels == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB) != 0;
    if (channels == 4) {
        const std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
        isFine = isFine && TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha) != 0;
    }
    return isFine;
}

bool SetNotes(TIFF* tiff, const ImageNotes& notes) {
    const auto set = [&](std::uint32_t field, const std::string& text) {
        return text.empty() || TIFFSetField(tiff, field, text.c_str()) != 0;
    };
    std::string description;
    const auto tell = [&](const char* what, const std::string& text) {
        if (!text.empty())
            description += (description.empty() ? "" : ", ") + std::string(what) + text;
    };
    tell("frame ", notes.frameNumber);
    tell("exposure ", notes.exposureTime);
    tell("", notes.time);
    return set(TIFFTAG_MODEL, notes.camera) && set(TIFFTAG_CAMERASERIALNUMBER, notes.serialNumber) &&
           set(TIFFTAG_IMAGEDESCRIPTION, description);
}

bool WriteRows(TIFF* tiff, SampleRows& rows) {
    std::vector<std::uint16_t> wide;
    std::vector<std::uint8_t> narrow;
    for (std::uint32_t row = 0; row < rows.Height(); ++row) {
        const auto samples = rows.Read(row);
        void* line = nullptr;
        if (rows.Bits() > 8) {
            wide.assign(samples.begin(), samples.end());  // the library may swap bytes in it
            line = wide.data();
        } else {
            narrow.clear();
            for (const std::uint16_t sample : samples)
                narrow.push_back(static_cast<std::uint8_t>(sample));
            line = narrow.data();
        }
        if (TIFFWriteScanline(tiff, line, row, 0) < 0)
            return false;
    }
    return TIFFFlush(tiff) != 0;
}

}  // namespace

/**
 * \brief Write a TIFF file with 8 or 16 bits a sample, compressed by LZW
 * \return Why the file can't be written
 */
std::error_code EncodeTiff(const std::string& path, SampleRows& rows, const ImageNotes& notes) {
    const TiffFile file = OpenTiff(path);
    if (file == nullptr || !SetFields(file.get(), rows) || !SetNotes(file.get(), notes) || !WriteRows(file.get(), rows))
        return WriteError();
    return {};
}

}  // namespace Vanto
