/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of ports in a configuration, and of the places of what they say
 */
#include "clbindings/PortEntryReader.h"

#include <gtest/gtest.h>

#include "clbindings/XercesGuard.h"
#include "scripted/Scripted.h"

namespace Vanto {
namespace {

std::string LineAndColumn(base::Place place) {
    return std::to_string(place.line) + ":" + std::to_string(place.column);
}

class PortEntryReader : public testing::Test {
protected:
    PortEntries Read(const std::string& text) const {
        m_folder.Write("ports.xml", text);
        BoundedXmlParser parser;
        parser.ParseFile(m_folder / "ports.xml");
        return ReadPortEntries(parser);
    }
    /// Of the one port's model.
    std::string PlaceOfModel(const std::string& text) const { return LineAndColumn(Read(text).at(0).model.place); }

    XercesSession m_session{[] {}};
    scripted::TemporaryFolder m_folder;
};

TEST_F(PortEntryReader, ReadsAllFieldsOfAPort) {
    const PortEntries entries = Read(
        "<r><Port><ID>i</ID><Enabled>yes</Enabled><Manufacturer>m</Manufacturer><Family>f</Family><Model>o</Model>"
        "<DeviceSpecificString>d</DeviceSpecificString><BaudRate>b</BaudRate></Port></r>");
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].id.text, "i");
    EXPECT_TRUE(entries[0].IsEnabled());
    EXPECT_EQ(entries[0].manufacturer.text, "m");
    EXPECT_EQ(entries[0].family.text, "f");
    EXPECT_EQ(entries[0].model.text, "o");
    EXPECT_EQ(entries[0].deviceSpecificString.text, "d");
    EXPECT_EQ(entries[0].baudRate.text, "b");
}

TEST_F(PortEntryReader, KeepsPortsWithoutAnId) {
    EXPECT_EQ(Read("<r><Port/><Port><ID>i</ID></Port></r>").size(), 2u);
}

TEST_F(PortEntryReader, KnowsWherePortsBegin) {
    const PortEntries entries = Read("<r>\n  <Port/><Port\n/>\n</r>");
    EXPECT_EQ(LineAndColumn(entries.at(0).place), "2:3");
    EXPECT_EQ(LineAndColumn(entries.at(1).place), "2:10");
}

TEST_F(PortEntryReader, KnowsWhereValuesBegin) {
    EXPECT_EQ(PlaceOfModel("<r><Port><Model/></Port></r>"), "1:10");
    EXPECT_EQ(PlaceOfModel("<r><Port a='1'\n b='2' ><Model c='&lt;'>x</Model></Port></r>"), "2:9");
    EXPECT_EQ(PlaceOfModel("<r><Port><!-- \n --><Model/></Port></r>"), "2:5");
    EXPECT_EQ(PlaceOfModel("<r><Port><?a b?><Model/></Port></r>"), "1:17");
    EXPECT_EQ(PlaceOfModel("<r><Port>a&amp;b<Model/></Port></r>"), "1:17");
    EXPECT_EQ(PlaceOfModel("<r><Port><![CDATA[<]]><Model/></Port></r>"), "1:23");
    EXPECT_EQ(PlaceOfModel("<r><Port><ID>x</ID><Model/></Port></r>"), "1:20");
}

TEST_F(PortEntryReader, PlacesWhatAnEntityBringsBehindTheReference) {
    EXPECT_EQ(PlaceOfModel("<!DOCTYPE r [<!ENTITY e '<Port><Model/></Port>'>]><r>&e;</r>"), "1:57");
}

TEST_F(PortEntryReader, CountsCharactersAndNotBytes) {
    EXPECT_EQ(PlaceOfModel("<r><Port>\xC3\xA4<Model/></Port></r>"), "1:11");
}

TEST_F(PortEntryReader, TellsOfNoPlaceWithoutAnElement) {
    EXPECT_FALSE(Read("<r><Port/></r>").at(0).model.IsThere());
}

TEST_F(PortEntryReader, FindsThePortsAboveAFault) {
    m_folder.Write("ports.xml", "<r><Port><ID>a</ID></Port>\n<Port><ID>b</ID></Prot></r>");
    BoundedXmlParser parser;
    EXPECT_THROW(parser.ParseFile(m_folder / "ports.xml"), GenICam::RuntimeException);
    ASSERT_TRUE(parser.GetFault());
    EXPECT_EQ(parser.GetFault()->place.line, 2u);
    EXPECT_EQ(ReadPortEntries(parser).size(), 2u);
}

}  // namespace
}  // namespace Vanto
