/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Options of cameras and the values in them
 */

#include "simulator/CameraOptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "camera/TextValues.h"

namespace MarlowSim {
namespace {

using std::chrono::milliseconds;

TEST(ParseCamera, TakesTheNameAlone) {
    const NamedCamera camera = ParseCamera("cam0");
    EXPECT_EQ(camera.name, "cam0");
    EXPECT_EQ(camera.options.model, "H2048");
    EXPECT_EQ(camera.options.baud, 9600U);
}

TEST(ParseCamera, TakesAllKeys) {
    const CameraOptions o =
        ParseCamera(
            "c,model=H8192L,serial=S-1,user-name=left,manufacturer=Other,family=,gencp=1.1,stacked=off,written-length="
            "off,"
            "rates=0x14,baud=115200,paced=on,zip=on,description-size=200000,description=/x.xml,seed=7,loss=0.02,"
            "damage=1,repeat=0,late=0.5,late-time=20,delay=5,pending=700,silent=on,fail-at=3,drop-after=4,silent-after="
            "5,listed-rates=0xFE,serial-registers=lost,firmware=3.1,sha1=off,always-pending=on,nonsense=on,noise=on,"
            "description-"
            "fault=zip,line-limit=115200,"
            "refuse-read=0x10:0x8006,refuse-write=0x10:0x8004+0x18:0x8007")
            .options;
    EXPECT_EQ(o.model, "H8192L");
    EXPECT_EQ(o.serial, "S-1");
    EXPECT_EQ(o.userName, "left");
    EXPECT_EQ(o.manufacturer, "Other");
    EXPECT_EQ(o.family, "");
    EXPECT_EQ(o.genCpMajor, 1);
    EXPECT_EQ(o.genCpMinor, 1);
    EXPECT_FALSE(o.stacked);
    EXPECT_FALSE(o.writtenLength);
    EXPECT_EQ(o.rates, 0x15U) << "every camera has 9600";
    EXPECT_EQ(o.baud, 115200U);
    EXPECT_TRUE(o.paced);
    EXPECT_TRUE(o.zip);
    EXPECT_EQ(o.descriptionSize, 200000U);
    EXPECT_EQ(o.descriptionFile, "/x.xml");
    EXPECT_EQ(o.seed, 7U);
    EXPECT_EQ(o.faults.loss, 0.02);
    EXPECT_EQ(o.faults.damage, 1);
    EXPECT_EQ(o.faults.repeat, 0);
    EXPECT_EQ(o.faults.late, 0.5);
    EXPECT_EQ(o.faults.lateTime, milliseconds(20));
    EXPECT_EQ(o.faults.delay, milliseconds(5));
    EXPECT_EQ(o.faults.pending, milliseconds(700));
    EXPECT_TRUE(o.faults.silent);
    EXPECT_EQ(o.faults.failAt, 3U);
    EXPECT_EQ(o.faults.dropAfter, 4U);
    EXPECT_EQ(o.faults.silentAfter, 5U);
    EXPECT_EQ(o.listedRates, 0xFFU);
    EXPECT_EQ(o.serialRegisters, SerialRegisters::kElsewhere);
    EXPECT_EQ(o.firmware, "3.1");
    EXPECT_FALSE(o.sha1);
    EXPECT_TRUE(o.faults.alwaysPending);
    EXPECT_TRUE(o.faults.nonsense);
    EXPECT_TRUE(o.faults.noise);
    EXPECT_EQ(o.descriptionFault, DescriptionFault::kDamagedZip);
    EXPECT_EQ(o.faults.lineLimit, 115200U);
    EXPECT_THAT(o.faults.refusedReads, testing::ElementsAre(testing::Pair(0x10U, 0x8006)));
    EXPECT_THAT(o.faults.refusedWrites,
                testing::ElementsAre(testing::Pair(0x10U, 0x8004), testing::Pair(0x18U, 0x8007)));
}

TEST(ParseCamera, TakesBackFaults) {
    CameraOptions o = ParseCamera("c,line-limit=9600,refuse-read=0x10:0x8006,serial-registers=off").options;
    EXPECT_EQ(o.serialRegisters, SerialRegisters::kNone);
    SetOptions(o, "line-limit=0,refuse-read=none,serial-registers=on");
    EXPECT_EQ(o.serialRegisters, SerialRegisters::kThere);
    EXPECT_EQ(o.faults.lineLimit, 0U);
    EXPECT_TRUE(o.faults.refusedReads.empty());
}

class BadCamera : public testing::TestWithParam<const char*> {};

TEST_P(BadCamera, IsRefused) {
    EXPECT_THROW(ParseCamera(GetParam()), std::invalid_argument);
}

INSTANTIATE_TEST_SUITE_P(Texts, BadCamera,
                         testing::Values("", ",model=H2048", "model=H2048", ".", "..", "a/b", "c,model=H1",
                                         "c,nothing=1", "c,model", "c,loss=1.1", "c,loss=-0.1", "c,loss=nan",
                                         "c,loss=0.1x", "c,zip=yes", "c,baud=9601", "c,rates=0x100", "c,gencp=2",
                                         "c,gencp=1.x", "c,gencp=1.", "c,delay=-1", "c,delay=3600001",
                                         "c,seed=18446744073709551616", "c,drop-after=x",
                                         "c,description-size=99999999999", "c,refuse-read=0x10", "c,refuse-read=0x10:6",
                                         "c,refuse-write=:0x8006", "c,refuse-write=x:0x8006", "c,line-limit=9601",
                                         "c,serial-registers=gone", "c,description-fault=on"));

TEST(BadCameraText, NamesTheKey) {
    try {
        ParseCamera("c,loss=2");
        FAIL();
    } catch (const std::invalid_argument& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("loss"));
    }
}

TEST(ParseCamera, RefusesATextLongerThanItsRegister) {
    EXPECT_NO_THROW(ParseCamera("c,serial=" + std::string(64, 'x')));
    EXPECT_THROW(ParseCamera("c,serial=" + std::string(65, 'x')), std::invalid_argument);
}

TEST(SetFault, TellsAKeyThatIsNone) {
    FaultSettings faults;
    EXPECT_TRUE(SetFault(faults, "loss", "0.5"));
    EXPECT_FALSE(SetFault(faults, "model", "H2048"));
}

TEST(OptionsHelp, NamesEveryKey) {
    for (const char* key : {"model=", "description-size=", "drop-after=", "late-time="})
        EXPECT_THAT(OptionsHelp(), testing::HasSubstr(key));
}

TEST(ParseCount, TakesDecimalAndHexadecimal) {
    EXPECT_EQ(ParseCount("10"), 10U);
    EXPECT_EQ(ParseCount("0x10"), 16U);
    EXPECT_THROW(ParseCount("0x"), std::invalid_argument);
    EXPECT_THROW(ParseCount(""), std::invalid_argument);
    EXPECT_THROW(ParseCount("11", 10), std::invalid_argument);
}

}  // namespace
}  // namespace MarlowSim
