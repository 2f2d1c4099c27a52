/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of what each kind of feature gives and takes
 */
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "GenApi/GenApi.h"
#include "tests/platform/genicam/genapi/Support.h"
#include "values/AllowedText.h"
#include "values/FeatureValueAccess.h"

namespace {

using GenICam::InvalidArgumentException;
using GenICam::OutOfRangeException;
using Vanto::FeatureBytes;
using Vanto::FeatureKind;
using Vanto::FeatureValue;
using namespace std::string_literals;

constexpr const char* kNodes = R"(
  <Category Name="Root"><pFeature>Whole</pFeature></Category>
  <Integer Name="Whole"><Value>16</Value><Unit>px</Unit></Integer>
  <Float Name="Number"><Value>2.5</Value><Min>0</Min><Max>10</Max><Inc>0.5</Inc><Unit>us</Unit></Float>
  <Boolean Name="Switch"><Value>1</Value></Boolean>
  <Enumeration Name="Choice"><EnumEntry Name="Red"><Value>0</Value></EnumEntry>
    <EnumEntry Name="Green"><Value>7</Value></EnumEntry><Value>7</Value></Enumeration>
  <Integer Name="Some"><Value>4</Value><ValidValueSet>1;2;4</ValidValueSet></Integer>
  <StringReg Name="Text"><Address>0</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  </StringReg>
  <Register Name="Bytes"><Address>8</Address><Length>3</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  </Register>
  <Integer Name="Never"><Value>0</Value></Integer>
  <Command Name="Go"><pValue>Never</pValue><CommandValue>1</CommandValue></Command>
)";

class FeatureKinds : public testing::Test {
protected:
    FeatureKinds() {
        m_memory.PutText(0, "abc");
        m_memory.Put(8, {1, 2, 3});
        m_map._LoadXMLFromString(genapitest::Describe(kNodes).c_str());
        m_map._Connect(&m_memory);
    }
    GenApi::INode& Node(const std::string& name) { return *m_map._GetNode(name.c_str()); }
    FeatureValue AfterWriting(const char* name, const FeatureValue& value) {
        Vanto::WriteValue(Node(name), value);
        return Vanto::ReadValue(Node(name));
    }
    void ExpectRefused(const char* name, const std::vector<FeatureValue>& values) {
        for (const FeatureValue& value : values)
            EXPECT_THROW(Vanto::WriteValue(Node(name), value), InvalidArgumentException) << name << value.index();
    }

private:
    genapitest::MemoryPort m_memory{16};
    GenApi::CNodeMapRef m_map;
};

const FeatureBytes kThree{1, 2, 3};

TEST_F(FeatureKinds, AreThoseOfTheirNodes) {
    const std::pair<const char*, FeatureKind> kinds[] = {
        {"Whole", FeatureKind::kInteger},      {"Number", FeatureKind::kFloat},  {"Switch", FeatureKind::kBoolean},
        {"Choice", FeatureKind::kEnumeration}, {"Text", FeatureKind::kString},   {"Bytes", FeatureKind::kRegister},
        {"Go", FeatureKind::kCommand},         {"Root", FeatureKind::kCategory}, {"Device", FeatureKind::kOther}};
    for (const auto& [name, kind] : kinds) {
        const bool hasNone =
            kind == FeatureKind::kCommand || kind == FeatureKind::kCategory || kind == FeatureKind::kOther;
        EXPECT_EQ(Vanto::KindOf(Node(name)), kind) << name;
        EXPECT_EQ(Vanto::HasValue(kind), !hasNone) << name;
    }
}

TEST_F(FeatureKinds, GiveValuesOfTheirTypes) {
    EXPECT_EQ(Vanto::ReadValue(Node("Whole")), FeatureValue(std::int64_t{16}));
    EXPECT_EQ(Vanto::ReadValue(Node("Number")), FeatureValue(2.5));
    EXPECT_EQ(Vanto::ReadValue(Node("Switch")), FeatureValue(true));
    EXPECT_EQ(Vanto::ReadValue(Node("Choice")), FeatureValue("Green"s));
    EXPECT_EQ(Vanto::ReadValue(Node("Text")), FeatureValue("abc"s));
    EXPECT_EQ(Vanto::ReadValue(Node("Bytes")), FeatureValue(kThree));
    for (const char* name : {"Go", "Root", "Device"}) {
        EXPECT_THROW(Vanto::ReadValue(Node(name)), InvalidArgumentException) << name;
        EXPECT_THROW(Vanto::ReadText(Node(name)), InvalidArgumentException) << name;
        EXPECT_THROW(Vanto::ParseValue(Node(name), "1"), InvalidArgumentException) << name;
    }
}

TEST_F(FeatureKinds, GiveWhatIsLikeThem) {
    EXPECT_EQ(Vanto::ReadInteger(Node("Whole")), 16);
    EXPECT_EQ(Vanto::ReadInteger(Node("Switch")), 1);
    EXPECT_EQ(Vanto::ReadInteger(Node("Choice")), 7);
    EXPECT_EQ(Vanto::ReadNumber(Node("Whole")), 16.0);
    EXPECT_EQ(Vanto::ReadNumber(Node("Number")), 2.5);
    EXPECT_TRUE(Vanto::ReadBoolean(Node("Switch")));
    EXPECT_TRUE(Vanto::ReadBoolean(Node("Whole")));
    EXPECT_FALSE(Vanto::ReadBoolean(Node("Never")));
    EXPECT_EQ(Vanto::ReadBytes(Node("Bytes")), kThree);
    for (const char* name : {"Number", "Text", "Bytes"})
        EXPECT_THROW(Vanto::ReadInteger(Node(name)), InvalidArgumentException) << name;
    for (const char* name : {"Switch", "Choice", "Text"})
        EXPECT_THROW(Vanto::ReadNumber(Node(name)), InvalidArgumentException) << name;
    for (const char* name : {"Number", "Choice", "Text"})
        EXPECT_THROW(Vanto::ReadBoolean(Node(name)), InvalidArgumentException) << name;
    for (const char* name : {"Whole", "Text", "Go"})
        EXPECT_THROW(Vanto::ReadBytes(Node(name)), InvalidArgumentException) << name;
}

TEST_F(FeatureKinds, OfNumbersTakeNumbers) {
    EXPECT_EQ(AfterWriting("Whole", std::int64_t{5}), FeatureValue(std::int64_t{5}));
    EXPECT_EQ(AfterWriting("Whole", true), FeatureValue(std::int64_t{1}));
    EXPECT_EQ(AfterWriting("Whole", false), FeatureValue(std::int64_t{0}));
    EXPECT_EQ(AfterWriting("Whole", -3.0), FeatureValue(std::int64_t{-3}));
    EXPECT_EQ(AfterWriting("Whole", 9007199254740992.0), FeatureValue(std::int64_t{9007199254740992}));
    ExpectRefused("Whole", {2.5, 9007199254740994.0, -9007199254740994.0, kThree, "2 us"s});
    EXPECT_EQ(AfterWriting("Number", 3.5), FeatureValue(3.5));
    EXPECT_EQ(AfterWriting("Number", std::int64_t{4}), FeatureValue(4.0));
    ExpectRefused("Number", {true, kThree, "2 px"s});
}

TEST_F(FeatureKinds, OfSwitchesAndEntriesTakeWhatMeansOne) {
    EXPECT_EQ(AfterWriting("Switch", false), FeatureValue(false));
    EXPECT_EQ(AfterWriting("Switch", std::int64_t{1}), FeatureValue(true));
    EXPECT_EQ(AfterWriting("Switch", std::int64_t{0}), FeatureValue(false));
    ExpectRefused("Switch", {std::int64_t{2}, std::int64_t{-1}, 1.0, kThree});
    EXPECT_EQ(AfterWriting("Choice", std::int64_t{0}), FeatureValue("Red"s));
    EXPECT_EQ(AfterWriting("Choice", " green "s), FeatureValue("Green"s));
    EXPECT_EQ(AfterWriting("Choice", "0x0"s), FeatureValue("Red"s));
    ExpectRefused("Choice", {std::int64_t{1}, 7.0, true, "Blue"s, "1"s});
}

TEST_F(FeatureKinds, OfTextsAndBytesTakeWhatFits) {
    EXPECT_EQ(AfterWriting("Text", "x y"s), FeatureValue("x y"s));
    ExpectRefused("Text", {std::int64_t{1}, 1.0, true, kThree});
    EXPECT_EQ(AfterWriting("Bytes", FeatureBytes{7, 8, 9}), FeatureValue(FeatureBytes{7, 8, 9}));
    EXPECT_EQ(AfterWriting("Bytes", "0x0a0bff"s), FeatureValue(FeatureBytes{10, 11, 255}));
    EXPECT_EQ(Vanto::ReadText(Node("Bytes")), "0x0a0bff");
    ExpectRefused("Bytes", {std::int64_t{1}, 1.0, true, "no bytes"s});
    EXPECT_THROW(Vanto::WriteValue(Node("Bytes"), FeatureBytes{1, 2}), OutOfRangeException);
    EXPECT_THROW(Vanto::WriteValue(Node("Bytes"), FeatureBytes{1, 2, 3, 4}), OutOfRangeException);
}

TEST_F(FeatureKinds, HaveUnitsAndRanges) {
    EXPECT_EQ(Vanto::UnitOf(Node("Whole")), "px");
    EXPECT_EQ(Vanto::UnitOf(Node("Number")), "us");
    EXPECT_EQ(Vanto::UnitOf(Node("Text")), "");
    EXPECT_EQ(Vanto::RangeText(Node("Some")), "1, 2, 4");
    EXPECT_EQ(Vanto::RangeText(Node("Number")), "0 .. 10 step 0.5 us");
    EXPECT_EQ(Vanto::RangeText(Node("Text")), "up to 8 bytes");
    EXPECT_EQ(Vanto::RangeText(Node("Bytes")), "3 bytes");
    EXPECT_EQ(Vanto::AllowedText(&Node("Bytes")), "3 bytes");
}

}  // namespace
