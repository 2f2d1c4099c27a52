/* SPDX-License-Identifier: Apache-2.0 */
#include "DescriptionFiles.h"

#include <gtest/gtest.h>

#include "Rig.h"
#include "base/Sha1.h"

namespace {

using namespace marlow;
using namespace marlow::test;
using gencp::ManifestEntry;

ManifestEntry Entry(std::uint8_t subMinor = 0) {
    ManifestEntry entry;
    entry.versionMajor = 1;
    entry.versionMinor = 2;
    entry.versionSubMinor = subMinor;
    entry.schemaMajor = 1;
    entry.schemaMinor = 1;
    return entry;
}

struct DescriptionFilesTest : testing::Test, MemoryRig {
    DescriptionFilesTest() { SetRate(0x80); }
    std::vector<std::string> Ids() {
        std::vector<std::string> ids;
        for (const auto& file : ListDescriptions(memory, "Marlow#Heron#H2048#1", logger).files)
            ids.push_back(file.xmlId);
        return ids;
    }
    Bytes Fetch() {
        const auto files = ListDescriptions(memory, "M", logger).files;
        Bytes bytes(files.at(0).entry.size);
        FetchDescription(memory, files.at(0), bytes);
        return bytes;
    }
};

TEST_F(DescriptionFilesTest, XmlIdHasSchemaDeviceAndVersion) {
    camera.SetFiles({{Entry(3), Bytes(10)}});
    EXPECT_EQ(Ids(), std::vector<std::string>{"SchemaVersion.1.1@Marlow#Heron#H2048#1@XMLVersion.1.2.3"});
}

TEST_F(DescriptionFilesTest, DigestIsSizeAndSha1) {
    auto entry = Entry();
    entry.size = 80123;
    EXPECT_EQ(DigestOf(entry), "");
    entry.sha1 = base::Sha1(Bytes{'a', 'b', 'c'});
    EXPECT_EQ(DigestOf(entry), "80123 a9993e364706816aba3e25717850c26c9cd0d89d");
}

TEST_F(DescriptionFilesTest, EveryDeviceDescriptionIsListed) {
    camera.SetFiles({{Entry(1), Bytes(10)}, {Entry(2), Bytes(20)}});
    EXPECT_EQ(Ids().size(), 2u);
}

TEST_F(DescriptionFilesTest, BufferDescriptionsAndUnknownFormatsAreLeftOut) {
    auto buffer = Entry();
    buffer.fileType = 1;
    auto unknown = Entry();
    unknown.fileFormat = 2;
    camera.SetFiles({{buffer, Bytes(10)}, {unknown, Bytes(10)}, {Entry(7), Bytes(10)}});
    EXPECT_EQ(Ids(), std::vector<std::string>{"SchemaVersion.1.1@Marlow#Heron#H2048#1@XMLVersion.1.2.7"});
}

TEST_F(DescriptionFilesTest, ZippedFileIsGivenAsItIs) {
    auto entry = Entry();
    entry.fileFormat = 1;
    const Bytes zip{'P', 'K', 3, 4, 0, 0, 9};
    entry.sha1 = base::Sha1(zip);
    camera.SetFiles({{entry, zip}});
    EXPECT_EQ(Fetch(), zip);
}

TEST_F(DescriptionFilesTest, OfTwoWithOneNameTheSmallerIsTaken) {
    auto zipped = Entry();
    zipped.fileFormat = 1;
    camera.SetFiles({{Entry(), Bytes(100, 'x')}, {zipped, Bytes(30, 'z')}, {Entry(), Bytes(50, 'y')}});
    EXPECT_EQ(Ids().size(), 1u);
    EXPECT_EQ(Fetch(), Bytes(30, 'z'));
}

TEST_F(DescriptionFilesTest, ImpossibleSizesAndAddressesAreLeftOut) {
    auto empty = Entry(1);
    auto huge = Entry(2);
    huge.size = kMaxDescriptionSize + 1;
    auto endless = Entry(3);
    endless.size = ~std::uint64_t{0};
    camera.SetFiles({{empty, Bytes()}, {huge, Bytes(1)}, {endless, Bytes(1)}});
    EXPECT_TRUE(Ids().empty());
    auto beyond = Entry(4);
    beyond.address = ~std::uint64_t{0} - 4;
    beyond.size = 10;
    camera.SetBytes(kManifestAddress + gencp::manifest::kFirstEntry, gencp::EncodeManifestEntry(beyond));
    EXPECT_TRUE(Ids().empty());
}

TEST_F(DescriptionFilesTest, SmallestAndLargestSizesAndTheLastAddressAreListed) {
    auto largest = Entry(2);
    largest.size = kMaxDescriptionSize;
    camera.SetFiles({{Entry(1), Bytes(1)}, {largest, Bytes(1)}});
    EXPECT_EQ(Ids().size(), 2u);
    auto last = Entry(3);
    last.address = ~std::uint64_t{0} - 10;
    last.size = 10;
    camera.SetBytes(kManifestAddress + gencp::manifest::kFirstEntry, gencp::EncodeManifestEntry(last));
    EXPECT_EQ(Ids().size(), 2u);
}

TEST_F(DescriptionFilesTest, AsManyEntriesAreReadAsAnyCameraHas) {
    std::vector<std::pair<ManifestEntry, Bytes>> files;
    for (std::uint8_t i = 0; i < 65; ++i)
        files.emplace_back(Entry(i), Bytes(1));
    camera.SetFiles(files);
    EXPECT_EQ(Ids().size(), 64u);
    files.pop_back();
    camera.SetFiles(files);
    EXPECT_EQ(Ids().size(), 64u);
}

TEST_F(DescriptionFilesTest, CameraWithoutManifestHasNone) {
    camera.SetNumber(gencp::abrm::kManifestTableAddress, 0);
    EXPECT_TRUE(Ids().empty());
}

TEST_F(DescriptionFilesTest, SaysWhatIsWrongWithThoseLeftOut) {
    camera.SetFiles({{Entry(), Bytes()}, {Entry(1), Bytes(10)}});
    const DescriptionList list = ListDescriptions(memory, "M", logger);
    EXPECT_EQ(list.files.size(), 1u);
    EXPECT_EQ(list.leftOut, "manifest entry 0 has size 0");
}

TEST_F(DescriptionFilesTest, CountOfEntriesIsNotTrusted) {
    std::vector<std::pair<ManifestEntry, Bytes>> files(70, {Entry(1), Bytes(10)});
    camera.SetFiles(files);
    camera.SetNumber(gencp::manifest::kEntryCount.At(kManifestAddress), ~std::uint64_t{0});
    EXPECT_EQ(Ids().size(), 1u);
}

TEST_F(DescriptionFilesTest, LongFileIsFetchedInWholePackets) {
    Bytes file(100'000);
    for (std::size_t i = 0; i < file.size(); ++i)
        file[i] = static_cast<std::uint8_t>(i * 7);
    auto entry = Entry();
    entry.sha1 = base::Sha1(file);
    camera.SetFiles({{entry, file}});
    ListDescriptions(memory, "M", logger).files;
    camera.received.clear();
    EXPECT_EQ(Fetch(), file);
    EXPECT_EQ(camera.received.size(), 3 + (file.size() + 1007) / 1008);
}

TEST_F(DescriptionFilesTest, FileWithAnotherSha1IsAFailure) {
    auto entry = Entry();
    entry.sha1 = base::Sha1(Bytes(10, 'a'));
    camera.SetFiles({{entry, Bytes(10, 'b')}});
    EXPECT_EQ(CodeOf([&] { Fetch(); }), kDamagedFile);
}

TEST_F(DescriptionFilesTest, FileWithoutSha1IsTakenAsItComes) {
    camera.SetFiles({{Entry(), Bytes(10, 'b')}});
    EXPECT_EQ(Fetch(), Bytes(10, 'b'));
}

}  // namespace
