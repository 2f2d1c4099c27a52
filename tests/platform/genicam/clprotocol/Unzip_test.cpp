/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of unpacking descriptions
 */

#include "Unzip.h"

#include <gtest/gtest.h>

#include "Archives.h"
#include "Base/GCException.h"

namespace {

using CLProtocol::IsZip;
using CLProtocol::Unzip;

TEST(Unzip, UnpacksADescription) {
    const std::string xml = "<RegisterDescription>" + std::string(100000, ' ') + "</RegisterDescription>";
    const std::string archive = MakeZip({{"camera.xml", xml}});
    EXPECT_TRUE(IsZip(archive));
    EXPECT_EQ(Unzip(archive), xml);
}

TEST(Unzip, KnowsWhatIsNoArchive) {
    for (const char* text : {"", "P", "PK", "<RegisterDescription/>", "PK\x05\x06"})
        EXPECT_FALSE(IsZip(text));
    EXPECT_THROW(Unzip("<RegisterDescription/>"), GenICam::RuntimeException);
    EXPECT_THROW(Unzip(""), GenICam::RuntimeException);
}

TEST(Unzip, TakesTheXmlFileOfSeveral) {
    EXPECT_EQ(Unzip(MakeZip({{"readme.txt", "read me"}, {"a/Camera.XML", "<a/>"}, {"b.xml", "<b/>"}})), "<a/>");
}

TEST(Unzip, TakesTheFirstFileWhereNoneIsXml) {
    EXPECT_EQ(Unzip(MakeZip({{"empty", ""}, {"camera.bin", "<a/>"}, {"b", "<b/>"}})), "<a/>");
}

TEST(Unzip, RefusesAnArchiveWithoutFiles) {
    EXPECT_THROW(Unzip(MakeZip({{"empty.xml", ""}})), GenICam::RuntimeException);
}

TEST(Unzip, AcceptsBytesBehindTheArchive) {
    // Padding of the camera's memory.
    EXPECT_EQ(Unzip(MakeZip({{"a.xml", "<a/>"}}) + std::string(64, '\0')), "<a/>");
}

TEST(Unzip, RefusesDamageAnywhere) {
    const std::string xml = "<RegisterDescription>some text that is long enough</RegisterDescription>";
    const std::string archive = MakeZip({{"a.xml", xml}});
    for (std::size_t at = 0; at < archive.size(); ++at) {
        std::string damaged = archive;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
        try {
            EXPECT_EQ(Unzip(damaged), xml) << "byte " << at;  // names and times may differ
        } catch (const GenICam::RuntimeException&) {
        }
    }
}

TEST(Unzip, RefusesATruncatedArchive) {
    const std::string archive = MakeZip({{"a.xml", std::string(1000, 'x')}});
    for (std::size_t size = 0; size < archive.size(); ++size)
        EXPECT_THROW(Unzip(archive.substr(0, size)), GenICam::RuntimeException) << size;
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

TEST(Unzip, RefusesABomb) {
    const std::string archive = MakeZip({{"a.xml", std::string(4u << 20, ' ')}});
    EXPECT_THROW(Unzip(archive), GenICam::RuntimeException);
    EXPECT_THROW(Unzip(WithAnnouncedSize(archive, 0xfffffffe)), GenICam::RuntimeException);
}

TEST(Unzip, RefusesAnnouncedSizesThatAreWrong) {
    const std::string archive = MakeZip({{"a.xml", std::string(1000, 'x')}});
    for (const std::uint32_t size : {1u, 999u, 1001u, 100000u, 0x7fffffffu, 0xffffffffu})
        EXPECT_THROW(Unzip(WithAnnouncedSize(archive, size)), GenICam::RuntimeException) << size;
}

}  // namespace
