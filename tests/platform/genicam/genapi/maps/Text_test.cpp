/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Values as texts, with and without verification and the cache
 */

#include "Support.h"

using namespace GenApi;
using namespace GenICam;

namespace genapitest {

class Text : public NodeMapTest {
protected:
    /// A feature "A" over a register "R" of these kinds, and a rule node "Rule".
    void LoadFeature(const std::string& kind, const std::string& more, const std::string& registerKind = "IntReg") {
        Load("<" + kind + " Name='A'>" + more + "<pValue>R</pValue></" + kind + "><" + registerKind +
             " Name='R'><Address>0</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></" +
             registerKind +
             "><IntReg Name='Rule'><Address>0x10</Address><Length>4</Length><AccessMode>RW</AccessMode>" +
             "<pPort>Device</pPort></IntReg>");
    }
    CValuePtr Value() { return Node("A"); }
};

TEST_F(Text, OfAnIntegerIsVerifiedOnDemand) {
    LoadFeature("Integer", "<Max>100</Max>");
    port.PutLittle(0, 101, 8);
    EXPECT_EQ(Value()->ToString(), "101");
    EXPECT_THROW(Value()->ToString(true), OutOfRangeException);
    EXPECT_THROW(Value()->FromString("200"), OutOfRangeException);
    Value()->FromString("200", false);
    EXPECT_EQ(port.Little(0, 8), 200U);
}

TEST_F(Text, OfAFloatIsVerifiedOnDemand) {
    LoadFeature("Float", "<Max>100</Max>");
    port.PutLittle(0, 101, 8);
    EXPECT_EQ(Value()->ToString(), "101");
    EXPECT_THROW(Value()->ToString(true), OutOfRangeException);
    EXPECT_THROW(Value()->FromString("200"), OutOfRangeException);
    Value()->FromString("200", false);
    EXPECT_EQ(port.Little(0, 8), 200U);
}

TEST_F(Text, OfAnEnumerationIsVerifiedOnDemand) {
    LoadFeature("Enumeration",
                "<EnumEntry Name='Off'><Value>0</Value></EnumEntry><EnumEntry Name='On'><pIsAvailable>Rule"
                "</pIsAvailable><Value>1</Value></EnumEntry>");
    EXPECT_THROW(Value()->FromString("On"), AccessException);
    Value()->FromString("On", false);
    EXPECT_EQ(port.Little(0, 8), 1U);
    EXPECT_EQ(Value()->ToString(), "On");
    EXPECT_THROW(Value()->ToString(true), AccessException);
}

TEST_F(Text, OfEveryKindComesFromTheDeviceWhenTheCacheIsIgnored) {
    const std::vector<std::pair<std::string, std::string>> kinds = {
        {"Integer", ""},
        {"Float", ""},
        {"Boolean", ""},
        {"Enumeration",
         "<EnumEntry Name='0'><Value>0</Value></EnumEntry><EnumEntry Name='1'><Value>1</Value></EnumEntry>"}};
    for (const auto& [kind, more] : kinds) {
        port.PutLittle(0, 0, 8);
        LoadFeature(kind, more);
        EXPECT_EQ(Value()->ToString(), "0") << kind;
        port.PutLittle(0, 1, 8);
        EXPECT_EQ(Value()->ToString(), "0") << kind;
        EXPECT_EQ(Value()->ToString(false, true), "1") << kind;
        EXPECT_EQ(Value()->ToString(), "1") << kind;
    }
}

TEST_F(Text, OfTextsAndBytesComesFromTheDeviceWhenTheCacheIsIgnored) {
    LoadFeature("String", "", "StringReg");
    port.PutText(0, "old");
    EXPECT_EQ(Value()->ToString(), "old");
    port.PutText(0, "new");
    EXPECT_EQ(Value()->ToString(), "old");
    EXPECT_EQ(Value()->ToString(false, true), "new");
    Load(
        "<Register Name='A'><Address>0</Address><Length>3</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>"
        "</Register>");
    EXPECT_EQ(Value()->ToString(), "0x6e6577");
    port.PutText(0, "xyz");
    EXPECT_EQ(Value()->ToString(), "0x6e6577");
    EXPECT_EQ(Value()->ToString(false, true), "0x78797a");
}

// What makes no text a value is refused before anything is written, verified or not.
TEST_F(Text, ThatIsNoValueWritesNothing) {
    for (const char* kind : {"Integer", "Float", "Boolean"}) {
        LoadFeature(kind, "");
        for (const bool verify : {false, true})
            EXPECT_THROW(Value()->FromString("seven", verify), InvalidArgumentException) << kind;
        EXPECT_EQ(port.Writes(), 0) << kind;
    }
}

}  // namespace genapitest
