/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of XML IDs
 */

#include "XmlIds.h"

#include <gtest/gtest.h>

namespace {

using CLProtocol::IsUsable;
using CLProtocol::XmlCandidate;
using CLProtocol::XmlId;

constexpr char kCamera[] = "Marlow#Heron#H2048#17";

bool CanUse(const std::string& text) {
    const auto id = XmlId::Parse(text);
    return id && IsUsable(*id, kCamera);
}

std::string BestOf(const std::vector<std::string>& texts) {
    std::vector<XmlCandidate> candidates;
    for (const std::string& text : texts)
        candidates.push_back({*XmlId::Parse(text), {}});
    CLProtocol::SortBestFirst(candidates);
    return candidates.front().id.text;
}

TEST(XmlIds, TakesAnIdApart) {
    const auto id = XmlId::Parse("SchemaVersion.1.1@Marlow#Heron@XMLVersion.1.20.3");
    ASSERT_TRUE(id);
    EXPECT_EQ(id->schema, (XmlId::Version{1, 1, 0}));
    EXPECT_EQ(id->device, "Marlow#Heron");
    EXPECT_EQ(id->version, (XmlId::Version{1, 20, 3}));
    EXPECT_EQ(id->text, "SchemaVersion.1.1@Marlow#Heron@XMLVersion.1.20.3");
}

TEST(XmlIds, KeepsSignsOfTheDevicePart) {
    const auto id = XmlId::Parse("SchemaVersion.1.0@a@b@XMLVersion.1");
    ASSERT_TRUE(id);
    EXPECT_EQ(id->device, "a@b");
}

TEST(XmlIds, MayNameTheDriverAsWell) {
    const auto id = XmlId::Parse("SchemaVersion.1.1@$(X)/a@b#libX.so#Marlow#Heron@XMLVersion.1.2.0");
    ASSERT_TRUE(id);
    EXPECT_EQ(id->device, "Marlow#Heron");
    EXPECT_EQ(id->text, "SchemaVersion.1.1@$(X)/a@b#libX.so#Marlow#Heron@XMLVersion.1.2.0");
    EXPECT_TRUE(CanUse(id->text));
    const std::string more = "SchemaVersion.1.1@Marlow#Heron#H2048@XMLVersion.1.0.0";
    EXPECT_EQ(BestOf({id->text, more}), more);
}

TEST(XmlIds, RefusesWhatIsNone) {
    for (const char* text : {"", "@", "@@", "SchemaVersion.1.1@Marlow", "SchemaVersion.1@M@XMLVersion.1.0",
                             "Schema.1.1@M@XMLVersion.1.0", "SchemaVersion.1.x@M@XMLVersion.1.0",
                             "SchemaVersion.1.-1@M@XMLVersion.1.0", "SchemaVersion.1.1@M@XMLVersion.1.0.0.0",
                             "SchemaVersion.1.1@M@XMLVersion.", "SchemaVersion.1.1@M@XMLVersion.99999999999",
                             "SchemaVersion. 1.1@M@XMLVersion.1", "SchemaVersion.1.1 @M@XMLVersion.1"})
        EXPECT_FALSE(XmlId::Parse(text)) << text;
    EXPECT_FALSE(XmlId::Parse("SchemaVersion.1.1@" + std::string(10000, 'x') + "@XMLVersion.1.0"));
}

TEST(XmlIds, DropsOtherCamerasAndSchemas) {
    EXPECT_TRUE(CanUse("SchemaVersion.1.1@Marlow@XMLVersion.1.0.0"));
    EXPECT_TRUE(CanUse("SchemaVersion.1.0@Marlow#Heron#H2048#17@XMLVersion.1.0.0"));
    EXPECT_TRUE(CanUse("SchemaVersion.1.1.1@Marlow@XMLVersion.1.0.0"));
    for (const char* text : {"SchemaVersion.1.2@Marlow@XMLVersion.1.0.0", "SchemaVersion.2.0@Marlow@XMLVersion.1.0.0",
                             "SchemaVersion.0.9@Marlow@XMLVersion.1.0.0", "SchemaVersion.1.1@Mar@XMLVersion.1.0.0",
                             "SchemaVersion.1.1@Marlow#Egret@XMLVersion.1.0.0", "SchemaVersion.1.1@@XMLVersion.1.0.0",
                             "SchemaVersion.1.1@Marlow#Heron#H2048#17#1@XMLVersion.1.0.0"})
        EXPECT_FALSE(CanUse(text)) << text;
}

TEST(XmlIds, PrefersHigherSchema) {
    EXPECT_EQ(BestOf({"SchemaVersion.1.0@Marlow#Heron#H2048@XMLVersion.9.0.0", "SchemaVersion.1.1@M@XMLVersion.1.0.0"}),
              "SchemaVersion.1.1@M@XMLVersion.1.0.0");
}

TEST(XmlIds, PrefersLongerDevicePart) {
    EXPECT_EQ(BestOf({"SchemaVersion.1.1@Marlow@XMLVersion.9.0.0", "SchemaVersion.1.1@M#H@XMLVersion.1.0.0"}),
              "SchemaVersion.1.1@M#H@XMLVersion.1.0.0");
}

TEST(XmlIds, PrefersHigherXmlVersionAsANumber) {
    EXPECT_EQ(BestOf({"SchemaVersion.1.1@M@XMLVersion.1.9.0", "SchemaVersion.1.1@M@XMLVersion.1.10.0",
                      "SchemaVersion.1.1@M@XMLVersion.1.2.9"}),
              "SchemaVersion.1.1@M@XMLVersion.1.10.0");
}

TEST(XmlIds, PrefersTheFileOfTheSameDescription) {
    const XmlId id = *XmlId::Parse("SchemaVersion.1.1@M@XMLVersion.1.0.0");
    std::vector<XmlCandidate> candidates = {{id, ""}, {id, "file"}};
    CLProtocol::SortBestFirst(candidates);
    EXPECT_EQ(candidates.front().file, "file");
}

TEST(XmlIds, KeepsEqualOnesInTheirOrder) {
    const XmlId id = *XmlId::Parse("SchemaVersion.1.1@M@XMLVersion.1.0.0");
    std::vector<XmlCandidate> candidates;
    for (const char* file : {"1", "2", "3", "4"})
        candidates.push_back({id, file});
    CLProtocol::SortBestFirst(candidates);
    std::string order;
    for (const XmlCandidate& candidate : candidates)
        order += candidate.file;
    EXPECT_EQ(order, "1234");
}

TEST(XmlIds, PrefersMoreTokensToMoreLetters) {
    EXPECT_EQ(BestOf({"SchemaVersion.1.1@Marlow#Heron2@XMLVersion.1.0.0", "SchemaVersion.1.1@M#H#1@XMLVersion.1.0.0"}),
              "SchemaVersion.1.1@M#H#1@XMLVersion.1.0.0");
    EXPECT_EQ(BestOf({"SchemaVersion.1.1@M#H@XMLVersion.9.0.0", "SchemaVersion.1.1@M#H1@XMLVersion.1.0.0"}),
              "SchemaVersion.1.1@M#H1@XMLVersion.1.0.0");
}

}  // namespace
