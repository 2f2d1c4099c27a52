/* SPDX-License-Identifier: Apache-2.0 */
#include "gencp/Manifest.h"

#include <gtest/gtest.h>

namespace {

using namespace gencp;

ManifestEntry Sample() {
    ManifestEntry entry;
    entry.versionMajor = 1;
    entry.versionMinor = 2;
    entry.versionSubMinor = 0x0304;
    entry.fileFormat = static_cast<std::uint8_t>(ManifestEntry::FileFormat::kZip);
    entry.schemaMajor = 1;
    entry.schemaMinor = 1;
    entry.address = 0x1000000;
    entry.size = 200000;
    entry.sha1.fill(0xAB);
    return entry;
}

TEST(ManifestEntry, HasTheFieldsAtTheirPlaces) {
    const Bytes bytes = EncodeManifestEntry(Sample());
    ASSERT_EQ(bytes.size(), 64u);
    EXPECT_EQ(Load32(bytes, 0), 0x01020304u);
    EXPECT_EQ(Load32(bytes, 4), 0x01010400u);
    EXPECT_EQ(Load64(bytes, 8), 0x1000000u);
    EXPECT_EQ(Load64(bytes, 16), 200000u);
    EXPECT_EQ(bytes[24], 0xAB);
    EXPECT_EQ(bytes[43], 0xAB);
    EXPECT_EQ(bytes[44], 0);
}

TEST(ManifestEntry, ComesBackAsItWas) {
    const auto entry = DecodeManifestEntry(EncodeManifestEntry(Sample()));
    ASSERT_TRUE(entry);
    EXPECT_EQ(*entry, Sample());
    EXPECT_TRUE(entry->Is(ManifestEntry::FileType::kDeviceXml));
    EXPECT_TRUE(entry->Is(ManifestEntry::FileFormat::kZip));
    EXPECT_TRUE(entry->HasSha1());
}

TEST(ManifestEntry, OfTooFewBytesIsNone) {
    EXPECT_FALSE(DecodeManifestEntry(Bytes(63)));
}

TEST(ManifestEntry, OfZerosHasNoSha1) {
    EXPECT_FALSE(DecodeManifestEntry(Bytes(64))->HasSha1());
    Bytes bytes(64);
    bytes[4 + 3] = 0x01;
    EXPECT_TRUE(DecodeManifestEntry(bytes)->Is(ManifestEntry::FileType::kBufferXml));
}

TEST(ManifestEntry, OfNothingIsAllZeros) {
    EXPECT_EQ(EncodeManifestEntry({}), Bytes(64));
}

}  // namespace
