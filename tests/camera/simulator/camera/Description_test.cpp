/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Descriptions: templates, sizes, ZIP files, checksums
 */

#include "camera/Description.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zip.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <stdexcept>

#include "../../../support/TemporaryFolder.h"
#include "camera/Template.h"

namespace MarlowSim {
namespace {

using testing::HasSubstr;
using testing::Not;

CameraOptions Of(const char* model) {
    CameraOptions options;
    options.model = model;
    return options;
}

std::string TextOf(const CameraOptions& options) {
    return DescriptionText(FindModel(options.model), options);
}

/// All texts between a beginning and an end that have nothing but letters, digits, _ and - in them.
std::set<std::string> AllBetween(const std::string& text, const std::string& begin, char end) {
    std::set<std::string> found;
    for (std::size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at + 1)) {
        const std::size_t first = at + begin.size();
        const std::size_t last =
            text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-", first);
        if (last != first && last != std::string::npos && text[last] == end)
            found.insert(text.substr(first, last - first));
    }
    return found;
}

/// The contents of all elements whose names begin with p and a capital letter: those refer to nodes.
std::set<std::string> AllReferences(const std::string& text) {
    std::set<std::string> found;
    for (std::size_t at = text.find("<p"); at != std::string::npos; at = text.find("<p", at + 1)) {
        const std::size_t first = text.find('>', at) + 1;
        found.insert(text.substr(first, text.find('<', first) - first));
    }
    return found;
}

TEST(FillTemplate, PutsValuesIn) {
    EXPECT_EQ(FillTemplate("a@X@b@Y@\n", {{"X", "1"}, {"Y", "2"}}, {}), "a1b2\n");
}

TEST(FillTemplate, LeavesOutWhatDoesNotApply) {
    const char* text = "a\n<!--if yes-->\nb\n<!--end-->\n<!--if no-->\nc @X@\n<!--end-->\nd\n";
    EXPECT_EQ(FillTemplate(text, {}, {"yes"}), "a\nb\nd\n");
}

TEST(FillTemplate, LeavesALoneMarkAsItIs) {
    EXPECT_EQ(FillTemplate("mail@home\n", {}, {}), "mail@home\n");
}

TEST(FillTemplate, RefusesAValueThatThereIsNot) {
    EXPECT_THROW(FillTemplate("@X@", {}, {}), std::logic_error);
}

class EachModel : public testing::TestWithParam<const char*> {};

TEST_P(EachModel, HasADescriptionOfRealSize) {
    const std::string text = TextOf(Of(GetParam()));
    EXPECT_GT(text.size(), 60000U);
    EXPECT_LT(text.size(), 100000U);
}

TEST_P(EachModel, LeavesNoTemplateMarks) {
    const std::string text = TextOf(Of(GetParam()));
    EXPECT_THAT(text, Not(HasSubstr("@")));
    EXPECT_THAT(text, Not(HasSubstr("<!--")));
}

TEST_P(EachModel, RefersOnlyToNodesThatThereAre) {
    const std::string text = TextOf(Of(GetParam()));
    const std::set<std::string> nodes = AllBetween(text, " Name=\"", '"');
    const std::set<std::string> references = AllReferences(text);
    EXPECT_GT(references.size(), 100U);
    for (const std::string& reference : references)
        EXPECT_TRUE(nodes.contains(reference)) << reference;
}

TEST_P(EachModel, HasTheNodesThatApplicationsKnow) {
    const std::string text = TextOf(Of(GetParam()));
    for (const char* name :
         {"Width", "Height", "OffsetX", "PixelFormat", "PixelSize", "PayloadSize", "TLParamsLocked", "ClTapGeometry",
          "DeviceTapGeometry", "BinningHorizontal", "ClSerialPortBaudRate", "DeviceID", "ExposureTime", "Gain",
          "TriggerSoftware", "UserSetSave", "TestPattern", "DeviceReset"}) {
        EXPECT_THAT(text, HasSubstr("Name=\"" + std::string(name) + "\"")) << name;
    }
}

TEST_P(EachModel, IsTheSameEachTimeAndItsGuidsAreItsOwn) {
    const std::string text = TextOf(Of(GetParam()));
    EXPECT_EQ(text, TextOf(Of(GetParam())));
    for (const char* other : {"H2048", "H4096", "H8192L"}) {
        if (std::string(other) != GetParam()) {
            for (const char* guid : {" ProductGuid=\"", " VersionGuid=\""}) {
                EXPECT_NE(AllBetween(text, guid, '"'), AllBetween(TextOf(Of(other)), guid, '"'));
                EXPECT_EQ(AllBetween(text, guid, '"').begin()->size(), 36U);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Models, EachModel, testing::Values("H2048", "H4096", "H8192L"));

TEST(DescriptionText, HasTheBaudRatesOfTheCameraOnly) {
    CameraOptions options;
    options.rates = 0x15;
    EXPECT_EQ(AllBetween(TextOf(options), "EnumEntry Name=\"Baud", '"'),
              (std::set<std::string>{"9600", "38400", "115200"}));
}

TEST(DescriptionText, IsPaddedToTheByte) {
    CameraOptions options;
    options.descriptionSize = 200 * 1024;
    const std::string text = TextOf(options);
    EXPECT_EQ(text.size(), options.descriptionSize);
    EXPECT_TRUE(text.ends_with(" -->\n"));
    EXPECT_EQ(text.find("--", text.rfind("<!--") + 4), text.size() - 4);
}

TEST(DescriptionText, IsNotCutToASmallerSize) {
    CameraOptions options;
    options.descriptionSize = 100;
    EXPECT_EQ(TextOf(options), TextOf({}));
}

TEST(DescriptionText, CanComeFromAFile) {
    const test_support::TemporaryFolder folder;
    CameraOptions options;
    options.descriptionFile = folder.Write("description", "<any/>");
    EXPECT_EQ(TextOf(options), "<any/>");
    std::filesystem::remove(options.descriptionFile);
    EXPECT_THROW(TextOf(options), std::invalid_argument);
    std::filesystem::create_directory(options.descriptionFile);
    EXPECT_THROW(TextOf(options), std::invalid_argument);
}

TEST(MakeDescriptionFile, PlainIsTheText) {
    const DescriptionFile file = MakeDescriptionFile(FindModel("H2048"), {});
    EXPECT_FALSE(file.isZip);
    EXPECT_EQ(std::string(file.bytes.begin(), file.bytes.end()), TextOf({}));
    EXPECT_EQ(file.sha1, base::Sha1(file.bytes));
}

TEST(MakeDescriptionFile, ZipHoldsTheTextAlone) {
    CameraOptions options;
    options.zip = true;
    const DescriptionFile file = MakeDescriptionFile(FindModel("H2048"), options);
    EXPECT_TRUE(file.isZip);
    EXPECT_EQ(file.sha1, base::Sha1(file.bytes));
    zip_source_t* source = zip_source_buffer_create(file.bytes.data(), file.bytes.size(), 0, nullptr);
    zip_t* archive = zip_open_from_source(source, ZIP_RDONLY, nullptr);
    ASSERT_NE(archive, nullptr);
    EXPECT_EQ(zip_get_num_entries(archive, 0), 1);
    EXPECT_STREQ(zip_get_name(archive, 0, 0), "H2048.xml");
    std::string text(TextOf(options).size() + 1, ' ');
    zip_file_t* content = zip_fopen_index(archive, 0, 0);
    text.resize(static_cast<std::size_t>(zip_fread(content, text.data(), text.size())));
    EXPECT_EQ(text, TextOf(options));
    zip_fclose(content);
    zip_discard(archive);
}

TEST(MakeDescriptionFile, ZipIsTheSameEachTime) {
    CameraOptions options;
    options.zip = true;
    EXPECT_EQ(MakeDescriptionFile(FindModel("H4096"), options).bytes,
              MakeDescriptionFile(FindModel("H4096"), options).bytes);
}

}  // namespace
}  // namespace MarlowSim
