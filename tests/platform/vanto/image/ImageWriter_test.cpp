/* SPDX-License-Identifier: Apache-2.0 */
#include "vanto/ImageWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>
#include <tiffio.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "../TestSupport.h"
#include "Base/GCException.h"

namespace {

using namespace Vanto;
using Bytes = std::vector<std::uint8_t>;

ImageView View(const Bytes& bytes, EPixelType type, std::uint32_t width, std::uint32_t height, std::size_t pitch = 0) {
    return {bytes.data(), bytes.size(), type, width, height, pitch};
}

class ImageWriter : public testing::Test {
protected:
    std::string Write(EImageFileFormat format, const ImageView& image, const ImageNotes& notes = {}) {
        const std::string path = m_folder / "image";
        WriteImage(path, format, image, notes);
        EXPECT_FALSE(std::filesystem::exists(path + ".part"));
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    // Reads a PNG back with its 16-bit samples as they stand in the file.
    std::vector<std::uint16_t> ReadPng(png_byte& channels, png_byte& significantBits) {
        std::FILE* const file = std::fopen((m_folder / "image").c_str(), "rb");
        png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        png_init_io(png, file);
        png_read_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
        channels = png_get_channels(png, info);
        png_color_8p sBit = nullptr;
        significantBits = 0;
        if (png_get_sBIT(png, info, &sBit) != 0)
            significantBits = channels == 1 ? sBit->gray : sBit->red;
        std::vector<std::uint16_t> samples;
        const std::size_t perRow = std::size_t{png_get_image_width(png, info)} * channels;
        for (std::uint32_t row = 0; row < png_get_image_height(png, info); ++row) {
            const png_bytep bytes = png_get_rows(png, info)[row];
            for (std::size_t i = 0; i < perRow; ++i) {
                samples.push_back(png_get_bit_depth(png, info) == 16
                                      ? static_cast<std::uint16_t>(bytes[2 * i] << 8 | bytes[2 * i + 1])
                                      : bytes[i]);
            }
        }
        png_destroy_read_struct(&png, &info, nullptr);
        std::fclose(file);
        return samples;
    }

    const TemporaryFolder m_folder;
};

TEST_F(ImageWriter, WritesMono8AsPgm) {
    const Bytes bytes{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(Write(EImageFileFormat::kPnm, View(bytes, PixelType_Mono8, 3, 2)),
              "P5\n3 2\n255\n\x01\x02\x03\x04\x05\x06");
}

TEST_F(ImageWriter, SkipsWhatLiesBetweenLines) {
    const Bytes bytes{1, 2, 99, 3, 4};
    EXPECT_EQ(Write(EImageFileFormat::kPnm, View(bytes, PixelType_Mono8, 2, 2, 3)), "P5\n2 2\n255\n\x01\x02\x03\x04");
}

TEST_F(ImageWriter, WritesMono12AsPgmWithItsOwnGreatestValue) {
    const Bytes bytes{0x34, 0x02, 0xFF, 0x0F};
    EXPECT_EQ(Write(EImageFileFormat::kPnm, View(bytes, PixelType_Mono12, 2, 1)), "P5\n2 1\n4095\n\x02\x34\x0F\xFF");
}

TEST_F(ImageWriter, WritesColourAsPpmInTheOrderRedGreenBlue) {
    const Bytes bytes{3, 2, 1, 6, 5, 4};
    EXPECT_EQ(Write(EImageFileFormat::kPnm, View(bytes, PixelType_BGR8, 2, 1)),
              "P6\n2 1\n255\n\x01\x02\x03\x04\x05\x06");
    EXPECT_EQ(Write(EImageFileFormat::kPnm, View(bytes, PixelType_RGB8, 2, 1)),
              "P6\n2 1\n255\n\x03\x02\x01\x06\x05\x04");
}

TEST_F(ImageWriter, LeavesAlphaOutOfPpm) {
    const Bytes bytes{1, 2, 3, 99, 4, 5, 6, 99};
    EXPECT_EQ(Write(EImageFileFormat::kPnm, View(bytes, PixelType_RGBa8, 2, 1)),
              "P6\n2 1\n255\n\x01\x02\x03\x04\x05\x06");
}

TEST_F(ImageWriter, UnpacksPackedSamples) {
    // Two samples of 12 bits, 0xABC and 0x123, from the lowest bit on.
    const Bytes bytes{0xBC, 0x3A, 0x12};
    EXPECT_EQ(Write(EImageFileFormat::kPnm, View(bytes, PixelType_Mono12p, 2, 1)), "P5\n2 1\n4095\n\x0A\xBC\x01\x23");
    // Four samples of 10 bits: 0x001, 0x155, 0x2AA, 0x3FF.
    const Bytes ten{0x01, 0x54, 0xA5, 0xEA, 0xFF};
    EXPECT_EQ(Write(EImageFileFormat::kPnm, View(ten, PixelType_BayerRG10p, 4, 1)),
              std::string("P5\n4 1\n1023\n\x00\x01\x01\x55\x02\xAA\x03\xFF", 20));
}

TEST_F(ImageWriter, WritesMono8AsPng) {
    const Bytes bytes{0, 127, 255, 3};
    Write(EImageFileFormat::kPng, View(bytes, PixelType_Mono8, 2, 2));
    png_byte channels = 0;
    png_byte bits = 0;
    EXPECT_EQ(ReadPng(channels, bits), (std::vector<std::uint16_t>{0, 127, 255, 3}));
    EXPECT_EQ(channels, 1);
    EXPECT_EQ(bits, 8);
}

TEST_F(ImageWriter, ShiftsFewerBitsUpInPngAndNotesHowMany) {
    const Bytes bytes{0x34, 0x02, 0xFF, 0x0F};
    Write(EImageFileFormat::kPng, View(bytes, PixelType_BayerGB12, 2, 1));
    png_byte channels = 0;
    png_byte bits = 0;
    EXPECT_EQ(ReadPng(channels, bits), (std::vector<std::uint16_t>{0x2340, 0xFFF0}));
    EXPECT_EQ(bits, 12);
}

TEST_F(ImageWriter, WritesColourWithAlphaAsPng) {
    const Bytes bytes{3, 2, 1, 4};
    Write(EImageFileFormat::kPng, View(bytes, PixelType_BGRa8, 1, 1));
    png_byte channels = 0;
    png_byte bits = 0;
    EXPECT_EQ(ReadPng(channels, bits), (std::vector<std::uint16_t>{1, 2, 3, 4}));
    EXPECT_EQ(channels, 4);
}

TEST_F(ImageWriter, WritesValuesAsTheyAreToTiff) {
    const Bytes bytes{0x34, 0x02, 0xFF, 0x0F, 0x01, 0x00, 0x02, 0x00};
    Write(EImageFileFormat::kTiff, View(bytes, PixelType_Mono12, 2, 2));
    TIFF* const tiff = TIFFOpen((m_folder / "image").c_str(), "r");
    ASSERT_NE(tiff, nullptr);
    std::uint16_t row[2] = {};
    EXPECT_EQ(TIFFReadScanline(tiff, row, 0, 0), 1);
    EXPECT_EQ(row[0], 0x234);
    EXPECT_EQ(row[1], 0xFFF);
    EXPECT_EQ(TIFFReadScanline(tiff, row, 1, 0), 1);
    EXPECT_EQ(row[1], 2);
    std::uint16_t greatest = 0;
    EXPECT_EQ(TIFFGetField(tiff, TIFFTAG_MAXSAMPLEVALUE, &greatest), 1);
    EXPECT_EQ(greatest, 4095);
    TIFFClose(tiff);
}

TEST_F(ImageWriter, CompressesTiffWithoutLoss) {
    const Bytes bytes(256 * 64, 7);
    const std::string file = Write(EImageFileFormat::kTiff, View(bytes, PixelType_Mono8, 256, 64));
    EXPECT_LT(file.size(), bytes.size() / 4);
}

TEST_F(ImageWriter, NotesWhatIsKnownOfTheImage) {
    const ImageNotes notes{"Marlow H2048", "24000001", "500 us", "12", "2026-03-14T15:09:26Z"};
    const Bytes bytes{1, 2, 3, 4};
    const std::string path = m_folder / "image";
    const std::string text = Write(EImageFileFormat::kPng, View(bytes, PixelType_Mono8, 2, 2), notes);
    for (const char* part : {"tEXtSource", "Marlow H2048", "Serial Number", "24000001", "Exposure Time", "500 us",
                             "Frame Number", "Creation Time"})
        EXPECT_THAT(text, testing::HasSubstr(part));
    WriteImage(path, EImageFileFormat::kTiff, View(bytes, PixelType_Mono8, 2, 2), notes);
    TIFF* const tiff = TIFFOpen(path.c_str(), "r");
    ASSERT_NE(tiff, nullptr);
    const auto field = [&](std::uint32_t tag) {
        char* value = nullptr;
        return TIFFGetField(tiff, tag, &value) == 1 ? std::string(value) : std::string();
    };
    EXPECT_EQ(field(TIFFTAG_MODEL), "Marlow H2048");
    EXPECT_EQ(field(TIFFTAG_CAMERASERIALNUMBER), "24000001");
    EXPECT_EQ(field(TIFFTAG_IMAGEDESCRIPTION), "frame 12, exposure 500 us, 2026-03-14T15:09:26Z");
    TIFFClose(tiff);
}

TEST_F(ImageWriter, AppendsPnmToBytes) {
    Bytes stream{9};
    AppendPnm(stream, View(Bytes{1, 2}, PixelType_Mono8, 2, 1));
    EXPECT_EQ(std::string(stream.begin() + 1, stream.end()), "P5\n2 1\n255\n\x01\x02");
}

TEST_F(ImageWriter, WritesColourToTiff) {
    const Bytes bytes{1, 2, 3, 4, 5, 6};
    Write(EImageFileFormat::kTiff, View(bytes, PixelType_RGB8, 2, 1));
    TIFF* const tiff = TIFFOpen((m_folder / "image").c_str(), "r");
    ASSERT_NE(tiff, nullptr);
    std::uint8_t row[6] = {};
    EXPECT_EQ(TIFFReadScanline(tiff, row, 0, 0), 1);
    EXPECT_EQ(Bytes(row, row + 6), bytes);
    TIFFClose(tiff);
}

TEST_F(ImageWriter, WritesRawBytesOfAnyType) {
    const Bytes bytes{9, 8, 7};
    EXPECT_EQ(Write(EImageFileFormat::kRaw, View(bytes, PixelType_YUV422_8, 1, 1)), "\x09\x08\x07");
}

TEST_F(ImageWriter, RefusesTypesThatItDoesNotKnow) {
    const Bytes bytes(100);
    EXPECT_THROW(Write(EImageFileFormat::kPng, View(bytes, PixelType_YUV422_8, 2, 2)),
                 GenICam::InvalidArgumentException);
    EXPECT_THROW(Write(EImageFileFormat::kPng, View(bytes, PixelType_Undefined, 2, 2)),
                 GenICam::InvalidArgumentException);
    EXPECT_FALSE(CanWriteImage(EImageFileFormat::kTiff, PixelType_RGB565p));
    EXPECT_FALSE(CanWriteImage(EImageFileFormat::kTiff, PixelType_RGB8_Planar));
    EXPECT_FALSE(CanWriteImage(EImageFileFormat::kTiff, PixelType_Mono12Packed));
    EXPECT_FALSE(CanWriteImage(EImageFileFormat::kTiff, PixelType_RGB10p32));
    EXPECT_FALSE(CanWriteImage(EImageFileFormat::kTiff, PixelType_Mono8s));
    EXPECT_TRUE(CanWriteImage(EImageFileFormat::kRaw, PixelType_RGB565p));
    EXPECT_TRUE(CanWriteImage(EImageFileFormat::kPng, PixelType_RGB12p));
}

TEST_F(ImageWriter, RefusesDataThatAreTooShort) {
    const Bytes bytes(11);
    const auto refuses = [&](const ImageView& image) {
        EXPECT_THROW(Write(EImageFileFormat::kPnm, image), GenICam::InvalidArgumentException);
    };
    refuses(View(bytes, PixelType_Mono8, 4, 3));
    refuses(View(bytes, PixelType_Mono16, 3, 2));
    refuses(View(bytes, PixelType_Mono8, 4, 3, 3));
    refuses(View(bytes, PixelType_Mono8, 0xFFFFFFFF, 0xFFFFFFFF));
    refuses(View(bytes, PixelType_Mono8, 1, 2, ~std::size_t{0}));
    refuses(View(bytes, PixelType_Mono8, 0, 2));
    refuses(ImageView{nullptr, 100, PixelType_Mono8, 2, 2, 0});
    EXPECT_NO_THROW(Write(EImageFileFormat::kPnm, View(bytes, PixelType_Mono8, 3, 3, 4)));
}

TEST_F(ImageWriter, NamesAFileThatItCantWriteAndLeavesNothing) {
    const Bytes bytes(4);
    const std::string path = m_folder / "none/image";
    for (const auto format :
         {EImageFileFormat::kPng, EImageFileFormat::kPnm, EImageFileFormat::kTiff, EImageFileFormat::kRaw}) {
        try {
            WriteImage(path, format, View(bytes, PixelType_Mono8, 2, 2));
            ADD_FAILURE() << "nothing was thrown";
        } catch (const GenICam::RuntimeException& error) {
            EXPECT_THAT(error.GetDescription(),
                        testing::StartsWith("The image file '" + path + "' can't be written: "));
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty(m_folder.Path()));
}

TEST_F(ImageWriter, LeavesAFolderThatIsInTheWay) {
    const Bytes bytes(4);
    std::filesystem::create_directory(m_folder / "image.part");
    EXPECT_THROW(WriteImage(m_folder / "image", EImageFileFormat::kRaw, View(bytes, PixelType_Mono8, 2, 2)),
                 GenICam::RuntimeException);
    EXPECT_TRUE(std::filesystem::exists(m_folder / "image.part"));
}

TEST_F(ImageWriter, KnowsExtensions) {
    EXPECT_STREQ(GetFileExtension(EImageFileFormat::kPng, PixelType_Mono8), ".png");
    EXPECT_STREQ(GetFileExtension(EImageFileFormat::kPnm, PixelType_BayerRG8), ".pgm");
    EXPECT_STREQ(GetFileExtension(EImageFileFormat::kPnm, PixelType_BGR8), ".ppm");
    EXPECT_STREQ(GetFileExtension(EImageFileFormat::kTiff, PixelType_BGR8), ".tiff");
    EXPECT_STREQ(GetFileExtension(EImageFileFormat::kRaw, PixelType_BGR8), ".raw");
}

}  // namespace
