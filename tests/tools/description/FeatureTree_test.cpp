/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of reading descriptions and of their feature tree
 */
#include "description/FeatureTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zip.h>

#include <cstring>

#include "description/FeatureFacts.h"
#include "error/ExitCode.h"
#include "system/Files.h"
#include "system/Folders.h"

namespace {

using namespace tools;
using testing::ElementsAre;

DescriptionModel Model(const std::string& nodes) {
    return DescriptionModel("<RegisterDescription ModelName='M'>" + nodes + "</RegisterDescription>");
}

FeatureFacts FactsOfA(const std::string& nodes) {
    const DescriptionModel model = Model(nodes);
    return FactsOf(model, *model.Find("A"));
}

TEST(DescriptionModel, ReadsNodesInsideGroups) {
    const DescriptionModel model = Model("<Group><Group/><Group><Integer Name='A'/></Group></Group><Float Name='B'/>");
    ASSERT_NE(model.Find("A"), nullptr);
    EXPECT_EQ(model.Find("B")->kind, "Float");
    EXPECT_EQ(model.Nodes().size(), 2U);
}

TEST(DescriptionModel, TrimsNamesAndTexts) {
    const DescriptionModel model = Model("<Integer Name=' A\n'><pValue>\n  B </pValue></Integer>");
    ASSERT_NE(model.Find("A"), nullptr);
    EXPECT_EQ(model.Find("A")->Text("pValue"), "B");
}

TEST(DescriptionModel, FindsNamesWithTheirNameSpace) {
    EXPECT_NE(Model("<Integer Name='A'/>").Find("Std::A"), nullptr);
}

TEST(DescriptionModel, LetsEntriesOfAStructureTakeWhatItHas) {
    const DescriptionModel model = Model(
        "<StructReg><Address>0</Address><pPort>P</pPort><StructEntry Name='A'><Bit>1</Bit></StructEntry></StructReg>");
    EXPECT_EQ(model.Find("A")->Text("pPort"), "P");
}

TEST(DescriptionModel, ThrowsWithThePlaceOfAFault) {
    try {
        const DescriptionModel model("<RegisterDescription>\n <Integer Name='A>\n</RegisterDescription>");
        FAIL();
    } catch (const ToolError& error) {
        EXPECT_THAT(error.what(), testing::StartsWith("line 2, column "));
    }
}

// No camera could be opened with it, so it is no description here either.
TEST(DescriptionModel, RefusesWhatTheEngineRefuses) {
    const std::string bomb = "<!DOCTYPE r [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;'>]>";
    const std::string outside = "<!DOCTYPE r [<!ENTITY a SYSTEM 'file:///etc/passwd'>]>";
    const std::string root = "<RegisterDescription><Integer Name='A'><Value>1</Value></Integer></RegisterDescription>";
    std::string groups;
    for (const char* tag : {"<Group>", "</Group>"})
        for (int i = 0; i < 100'000; ++i)
            groups += tag;
    EXPECT_THROW(DescriptionModel{bomb + root}, ToolError);
    EXPECT_THROW(DescriptionModel{outside + root}, ToolError);
    EXPECT_THROW(Model(groups), ToolError);
    EXPECT_THROW(DescriptionModel("<RegisterDescription SchemaMajorVersion='2'/>"), ToolError);
}

TEST(DescriptionModel, TakesWhatTheEngineTakes) {
    const std::string root = "<RegisterDescription><Integer Name='A'><Value>1</Value></Integer></RegisterDescription>";
    EXPECT_NE(DescriptionModel("camera speaking: <?xml version='1.0'?>" + root).Find("A"), nullptr);
    EXPECT_NE(DescriptionModel("<?xml version='1.0' encoding='iso-8859-1'?><!--\xE4-->" + root).Find("A"), nullptr);
    std::string wide = "\xFF\xFE";
    for (const char character : root)
        wide.append({character, '\0'});
    EXPECT_NE(DescriptionModel(wide).Find("A"), nullptr);
}

TEST(FeatureFacts, TakesAccessFromTheRegisterBehind) {
    EXPECT_EQ(FactsOfA("<Integer Name='A'><pValue>R</pValue></Integer><IntReg Name='R'><Address>0</Address>"
                       "<AccessMode>RW</AccessMode></IntReg>")
                  .access,
              "RW");
}

TEST(FeatureFacts, CombinesImposedAccess) {
    EXPECT_EQ(FactsOfA("<Integer Name='A'><ImposedAccessMode>RO</ImposedAccessMode><pValue>R</pValue></Integer>"
                       "<IntReg Name='R'><Address>0</Address><AccessMode>RW</AccessMode></IntReg>")
                  .access,
              "RO");
}

TEST(FeatureFacts, KnowsThatFormulasCannotBeWritten) {
    EXPECT_EQ(FactsOfA("<Float Name='A'><pValue>F</pValue></Float><SwissKnife Name='F'/>").access, "RO");
}

TEST(FeatureFacts, EndsOnACircle) {
    EXPECT_EQ(FactsOfA("<Integer Name='A'><pValue>A</pValue></Integer>").access, "RW");
}

TEST(FeatureFacts, ResolvesLimitsThatAreConstants) {
    const FeatureFacts facts = FactsOfA(
        "<Integer Name='A'><Min>1</Min><pMax>M</pMax><pInc>I</pInc><Unit>px</Unit></Integer>"
        "<Integer Name='M'><Value>99</Value></Integer><IntReg Name='I'><Address>0</Address></IntReg>");
    EXPECT_EQ(RangeText(facts), "1 .. 99 step I px");
}

TEST(FeatureFacts, ListsEntriesAndConditions) {
    const FeatureFacts facts = FactsOfA(
        "<Enumeration Name='A'><pIsLocked>L</pIsLocked><EnumEntry Name='On'><Value>1</Value></EnumEntry>"
        "<EnumEntry Name='Off'><Value>0</Value></EnumEntry></Enumeration>");
    EXPECT_THAT(facts.entries, ElementsAre("On", "Off"));
    EXPECT_THAT(facts.conditions, ElementsAre(std::pair("locked if", "L")));
}

TEST(FeatureTree, NestsFeaturesBelowCategories) {
    const Json json =
        FeatureTreeJson(Model("<Category Name='Root'><pFeature>C</pFeature><pFeature>Missing</pFeature></Category>"
                              "<Category Name='C'><pFeature>A</pFeature></Category><Integer Name='A'/>"));
    EXPECT_EQ(json.at("ModelName"), "M");
    EXPECT_EQ(json.at("Features").at(0).at("Features").at(0).at("Name"), "A");
    EXPECT_EQ(json.at("Features").size(), 1U);
}

TEST(FeatureTree, OpensACategoryOnlyOnce) {
    const Json json = FeatureTreeJson(
        Model("<Category Name='Root'><pFeature>C</pFeature><pFeature>C</pFeature></Category>"
              "<Category Name='C'><pFeature>Root</pFeature><pFeature>A</pFeature></Category><Integer Name='A'/>"));
    EXPECT_EQ(json.at("Features").size(), 2U);
    EXPECT_EQ(json.at("Features").at(0).at("Features").size(), 2U);
    EXPECT_TRUE(json.at("Features").at(1).at("Features").empty());
}

TEST(FeatureTree, NeedsARoot) {
    EXPECT_THROW(FeatureTreeJson(Model("<Integer Name='A'/>")), ToolError);
}

TEST(DescriptionFile, RefusesWhatOnlyLooksZipped) {
    const TemporaryFolder folder;
    WriteFile(folder.Path() / "x.zip", "PK\x03\x04 nonsense");
    EXPECT_THROW(ReadDescriptionText(folder.Path() / "x.zip"), ToolError);
}

TEST(DescriptionFile, RefusesAFolder) {
    const TemporaryFolder folder;
    EXPECT_THROW(ReadDescriptionText(folder.Path()), ToolError);
}

TEST(DescriptionModel, ReadsPrefixedElements) {
    const DescriptionModel model(
        "<g:RegisterDescription xmlns:g='http://www.genicam.org/GenApi/Version_1_1'><g:Group><g:Integer Name='A'>"
        "<g:Value>1</g:Value></g:Integer></g:Group></g:RegisterDescription>");
    ASSERT_NE(model.Find("A"), nullptr);
    EXPECT_EQ(model.Find("A")->kind, "Integer");
    EXPECT_EQ(model.Find("A")->Text("Value"), "1");
}

TEST(DescriptionModel, GivesEntriesWhatStandsBehindThem) {
    const DescriptionModel model =
        Model("<StructReg><StructEntry Name='A'><Bit>1</Bit></StructEntry><Length>4</Length></StructReg>");
    EXPECT_EQ(model.Find("A")->Text("Length"), "4");
}

TEST(FeatureFacts, TakesRangeAndUnitFromTheNodeBehind) {
    const FeatureFacts facts = FactsOfA(
        "<Float Name='A'><pValue>B</pValue><Max>3</Max></Float>"
        "<Float Name='B'><pValue>C</pValue><pMin>M</pMin><Max>5</Max></Float>"
        "<Float Name='C'><Value>1</Value><Min>1</Min><Unit>us</Unit></Float><Float Name='M'><Value>2</Value></Float>");
    EXPECT_EQ(RangeText(facts), "2 .. 3 us");
}

TEST(FeatureFacts, TakesNoRangeThroughAConverter) {
    const FeatureFacts facts = FactsOfA(
        "<Float Name='A'><pValue>B</pValue></Float><Converter Name='B'><pValue>C</pValue><Unit>ms</Unit>"
        "</Converter><Float Name='C'><Value>1</Value><Min>1</Min><Max>5</Max><Unit>us</Unit></Float>");
    EXPECT_EQ(RangeText(facts), "ms");
}

TEST(FeatureFacts, KnowsThatKeysOfARomCannotBeWritten) {
    EXPECT_EQ(FactsOfA("<IntKey Name='A'><p1212Parser>R</p1212Parser><Key>1</Key></IntKey>").access, "RO");
    EXPECT_EQ(FactsOfA("<ConfRom Name='R'><TextDesc Name='A'><Key>1</Key></TextDesc></ConfRom>").access, "RO");
}

TEST(DescriptionFile, TakesTheFirstXmlFileOfAnArchive) {
    const TemporaryFolder folder;
    const std::filesystem::path path = folder.Path() / "x.zip";
    zip_t* archive = zip_open(path.string().c_str(), ZIP_CREATE, nullptr);
    ASSERT_NE(archive, nullptr);
    for (const auto& [name, text] :
         {std::pair("readme.txt", "notes"), std::pair("camera.XML", "<first/>"), std::pair("other.xml", "<second/>")})
        ASSERT_GE(zip_file_add(archive, name, zip_source_buffer(archive, text, std::strlen(text), 0), 0), 0);
    ASSERT_EQ(zip_close(archive), 0);
    EXPECT_EQ(ReadDescriptionText(path), "<first/>");
}

}  // namespace
