/* SPDX-License-Identifier: Apache-2.0 */
#include "KnownCameras.h"

#include <gtest/gtest.h>

#include "Rig.h"

namespace {

using namespace marlow;
using namespace marlow::test;

CameraFacts Facts(const std::string& serial) {
    CameraFacts facts;
    facts.name = {"Marlow", "Heron", "H2048", "2.0", serial};
    return facts;
}

struct KnownCamerasTest : testing::Test, Rig {};

TEST_F(KnownCamerasTest, FindsACameraByItsFullName) {
    known.Remember(&serial, Facts("1"), 0x10);
    known.Remember(&serial, Facts("2"), 0x20);
    EXPECT_EQ(known.Find(DeviceRequest("Marlow#Heron#H2048#1"))->rateFlag, 0x10u);
    EXPECT_FALSE(known.Find(DeviceRequest("Marlow#Heron#H2048#3")));
}

TEST_F(KnownCamerasTest, TemplateNamesNoCamera) {
    known.Remember(&serial, Facts("1"), 0x10);
    EXPECT_FALSE(known.Find(DeviceRequest("Marlow#Heron#H2048")));
}

TEST_F(KnownCamerasTest, NewestRateCounts) {
    known.Remember(&serial, Facts("1"), 0x10);
    known.Remember(&serial, Facts("1"), 0x80);
    EXPECT_EQ(known.Find(DeviceRequest("Marlow#Heron#H2048#1"))->rateFlag, 0x80u);
    EXPECT_EQ(known.RateOf(&serial), 0x80u);
}

TEST_F(KnownCamerasTest, NewestVersionOfACameraCounts) {
    known.Remember(&serial, Facts("1"), 0x10);
    auto newer = Facts("1");
    newer.name.version = "2.1";
    known.Remember(&serial, newer, 0x80);
    EXPECT_EQ(known.Find(DeviceRequest("Marlow#Heron#H2048#2.0#1"))->facts.name.version, "2.1");
}

TEST_F(KnownCamerasTest, UnknownLineHasNoRate) {
    EXPECT_FALSE(known.RateOf(&serial));
    known.Remember(&serial, Facts("1"), 0x10);
    known.Clear();
    EXPECT_FALSE(known.RateOf(&serial));
}

TEST_F(KnownCamerasTest, ForgetsTheOldestOf257) {
    std::vector<std::unique_ptr<VirtualLine>> lines;
    for (int i = 0; i < 257; ++i) {
        if (i == 256) {
            EXPECT_TRUE(known.Find(DeviceRequest("Marlow#Heron#H2048#0")));
            EXPECT_TRUE(known.RateOf(lines[0].get()));
        }
        lines.push_back(std::make_unique<VirtualLine>(clock, camera));
        known.Remember(lines.back().get(), Facts(std::to_string(i)), 0x10);
    }
    EXPECT_FALSE(known.Find(DeviceRequest("Marlow#Heron#H2048#0")));
    EXPECT_TRUE(known.Find(DeviceRequest("Marlow#Heron#H2048#1")));
    EXPECT_FALSE(known.RateOf(lines[0].get()));
    EXPECT_TRUE(known.RateOf(lines[1].get()));
}

TEST_F(KnownCamerasTest, KeepsTheNewestOnly) {
    for (int i = 0; i < 1000; ++i)
        known.Remember(&serial, Facts(std::to_string(i)), 0x10);
    EXPECT_FALSE(known.Find(DeviceRequest("Marlow#Heron#H2048#0")));
    EXPECT_TRUE(known.Find(DeviceRequest("Marlow#Heron#H2048#999")));
}

}  // namespace
