/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of DescribeFile: a description without a camera
 */

#include "vanto/Description.h"

#include <algorithm>

#include "archives/Archives.h"
#include "tests/application/ApplicationTest.h"

namespace {

using application::HasSubstr;
using application::Thrown;

constexpr const char* kDescription = R"(<?xml version="1.0"?>
<RegisterDescription ModelName="M1" VendorName="Somebody" ToolTip="A camera" StandardNameSpace="CL"
 SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0"
 SubMinorVersion="0" ProductGuid="a" VersionGuid="b" xmlns="http://www.genicam.org/GenApi/Version_1_1">
 <Category Name="Root"><pFeature>Light</pFeature></Category>
 <Category Name="Light"><pFeature>Exposure</pFeature><pFeature>Inner</pFeature></Category>
 <Category Name="Inner"><pFeature>Mode</pFeature><pFeature>Light</pFeature><pFeature>Nobody</pFeature></Category>
 <Float Name="Exposure"><ToolTip>How long</ToolTip><Description>At length</Description>
  <DisplayName>Exposure time</DisplayName><Visibility>Expert</Visibility><pValue>Register</pValue><Unit>us</Unit></Float>
 <FloatReg Name="Register"><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  <Endianess>BigEndian</Endianess></FloatReg>
 <Enumeration Name="Mode"><EnumEntry Name="Off"><Value>0</Value></EnumEntry>
  <EnumEntry Name="On"><Value>7</Value></EnumEntry><Value>0</Value></Enumeration>
 <Port Name="Device"/>
</RegisterDescription>)";

class Descriptions : public testing::Test {
protected:
    Descriptions() { m_folder.Write("camera.xml", kDescription); }
    scripted::TemporaryFolder m_folder;
};

TEST_F(Descriptions, TellWhatTheCameraIs) {
    const Vanto::Description description = Vanto::DescribeFile(m_folder / "camera.xml");
    EXPECT_EQ(description.vendor, "Somebody");
    EXPECT_EQ(description.model, "M1");
    EXPECT_EQ(description.toolTip, "A camera");
}

TEST_F(Descriptions, HaveEachFeatureOnceWithItsCategory) {
    const auto features = Vanto::DescribeFile(m_folder / "camera.xml").features;
    ASSERT_EQ(features.size(), 2u);
    EXPECT_EQ(features[0].name, "Exposure");
    EXPECT_EQ(features[0].kind, Vanto::FeatureKind::kFloat);
    EXPECT_EQ(features[0].category, "Light");
    EXPECT_EQ(features[0].displayName, "Exposure time");
    EXPECT_EQ(features[0].toolTip, "How long");
    EXPECT_EQ(features[0].description, "At length");
    EXPECT_EQ(features[0].unit, "us");
    EXPECT_EQ(features[0].visibility, Vanto::FeatureVisibility::kExpert);
    EXPECT_EQ(features[1].name, "Mode");
    EXPECT_EQ(features[1].category, "Light/Inner");
}

TEST_F(Descriptions, HaveEntriesWithTheirValues) {
    const auto features = Vanto::DescribeFile(m_folder / "camera.xml").features;
    ASSERT_EQ(features.size(), 2u);
    EXPECT_EQ(features[1].entries, (std::vector<std::pair<std::string, std::int64_t>>{{"Off", 0}, {"On", 7}}));
}

TEST_F(Descriptions, TellOfFaultsThatDoNotMatter) {
    const auto warnings = Vanto::DescribeFile(m_folder / "camera.xml").warnings;
    EXPECT_THAT(warnings, testing::Contains(HasSubstr("Nobody")));
    EXPECT_THAT(warnings, testing::Each(testing::StartsWith("line ")));
}

TEST_F(Descriptions, AreReadFromAnArchiveWhateverItsName) {
    m_folder.Write("archive.xml", MakeZip({{"camera.xml", kDescription}}));
    EXPECT_EQ(Vanto::DescribeFile(m_folder / "archive.xml").model, "M1");
    EXPECT_EQ(Vanto::DescribeFile(m_folder / "archive.xml").features.size(), 2u);
}

TEST_F(Descriptions, AreNoneWhereTheFileIsNone) {
    m_folder.Write("text.xml", "no description");
    m_folder.Write("empty.xml", "");
    m_folder.Write("byte.xml", "P");
    for (const char* name : {"text.xml", "empty.xml", "byte.xml", "missing.xml"}) {
        const auto error = Thrown<Vanto::CameraError>([&] { Vanto::DescribeFile(m_folder / name); });
        EXPECT_THAT(error.what(), HasSubstr(name));
    }
}

TEST(DescriptionOfTheSimulatedCamera, HasTheFeaturesThatTheCameraHas) {
    const auto description = Vanto::DescribeFile(std::string(VANTO_DESCRIPTIONS) + "/Heron.xml");
    const auto hasName = [](const char* name) {
        return [name](const Vanto::DescribedFeature& feature) { return feature.name == name; };
    };
    const auto& features = description.features;
    ASSERT_EQ(std::count_if(features.begin(), features.end(), hasName("ExposureTime")), 1);
    const auto inverter = std::find_if(features.begin(), features.end(), hasName("LineInverter"));
    ASSERT_NE(inverter, features.end());
    EXPECT_EQ(inverter->selectors, std::vector<std::string>{"LineSelector"});
}

}  // namespace
