/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of unpacking descriptions
 */

#include "base/Zip.h"

#include <gtest/gtest.h>

#include "archives/Archives.h"

namespace {

using base::IsZip;
using base::UnzipDescription;
using base::ZipError;

TEST(Zip, UnpacksADescription) {
    const std::string xml = "<RegisterDescription>" + std::string(100000, ' ') + "</RegisterDescription>";
    const std::string archive = MakeZip({{"camera.xml", xml}});
    EXPECT_TRUE(IsZip(archive));
    EXPECT_EQ(UnzipDescription(archive), xml);
}

TEST(Zip, KnowsWhatIsNoArchive) {
    for (const char* text : {"", "P", "PK", "<RegisterDescription/>", "PK\x05\x06"})
        EXPECT_FALSE(IsZip(text));
    EXPECT_THROW(UnzipDescription("<RegisterDescription/>"), ZipError);
    EXPECT_THROW(UnzipDescription(""), ZipError);
}

TEST(Zip, TakesTheXmlFileOfSeveral) {
    EXPECT_EQ(UnzipDescription(MakeZip({{"readme.txt", "read me"}, {"a/Camera.XML", "<a/>"}, {"b.xml", "<b/>"}})),
              "<a/>");
}

TEST(Zip, TakesTheFirstFileWhereNoneIsXml) {
    EXPECT_EQ(UnzipDescription(MakeZip({{"empty", ""}, {"camera.bin", "<a/>"}, {"b", "<b/>"}})), "<a/>");
}

TEST(Zip, RefusesAnArchiveWithoutFiles) {
    EXPECT_THROW(UnzipDescription(MakeZip({{"empty.xml", ""}})), ZipError);
}

TEST(Zip, AcceptsBytesBehindTheArchive) {
    // Padding of the camera's memory.
    EXPECT_EQ(UnzipDescription(MakeZip({{"a.xml", "<a/>"}}) + std::string(64, '\0')), "<a/>");
}

TEST(Zip, RefusesDamageAnywhere) {
    const std::string xml = "<RegisterDescription>some text that is long enough</RegisterDescription>";
    const std::string archive = MakeZip({{"a.xml", xml}});
    for (std::size_t at = 0; at < archive.size(); ++at) {
        std::string damaged = archive;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
        try {
            EXPECT_EQ(UnzipDescription(damaged), xml) << "byte " << at;  // names and times may differ
        } catch (const ZipError&) {
        }
    }
}

TEST(Zip, RefusesATruncatedArchive) {
    const std::string archive = MakeZip({{"a.xml", std::string(1000, 'x')}});
    for (std::size_t size = 0; size < archive.size(); ++size)
        EXPECT_THROW(UnzipDescription(archive.substr(0, size)), ZipError) << size;
}

// Changes the size that an archive announces for its one file.
std::string WithAnnouncedSize(std::string archive, std::uint32_t size) {
    const auto write = [&](std::size_t at) {
        for (int byte = 0; byte < 4; ++byte)
            archive[at++] = static_cast<char>(size >> 8 * byte);
    };
    constexpr std::size_t kSizeInFileHeader = 22;
    constexpr std::size_t kSizeInDirectory = 24;
    write(kSizeInFileHeader);
    write(archive.find("PK\x01\x02") + kSizeInDirectory);
    return archive;
}

TEST(Zip, RefusesABomb) {
    const std::string archive = MakeZip({{"a.xml", std::string(4u << 20, ' ')}});
    EXPECT_THROW(UnzipDescription(archive), ZipError);
    EXPECT_THROW(UnzipDescription(WithAnnouncedSize(archive, 0xfffffffe)), ZipError);
}

TEST(Zip, RefusesAnnouncedSizesThatAreWrong) {
    const std::string archive = MakeZip({{"a.xml", std::string(1000, 'x')}});
    for (const std::uint32_t size : {1u, 999u, 1001u, 100000u, 0x7fffffffu, 0xffffffffu})
        EXPECT_THROW(UnzipDescription(WithAnnouncedSize(archive, size)), ZipError) << size;
}

}  // namespace
