/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of asking serial libraries for texts
 */

#include "SerialErrorText.h"

#include <gtest/gtest.h>

#include <cstring>

#include "CLProtocol/CLException.h"
#include "SerialLibrary.h"
#include "os/Path.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::SerialLibrary;

class ErrorTextOfALibrary : public testing::Test {
protected:
    std::string TextOf(std::int32_t code) const { return SerialLibrary(scripted::SerialPath()).ErrorText(code); }

    scripted::Environment environment;
    scripted::SerialScript& script = scripted::Serial();
};

TEST_F(ErrorTextOfALibrary, IsItsOwnForAnyCode) {
    for (const std::int32_t code : {-10004, -1, 0, 1, -30001, 0x7fffffff, -0x7fffffff}) {
        script.errorTexts[code] = "text of " + std::to_string(code);
        EXPECT_EQ(TextOf(code), "text of " + std::to_string(code));
    }
}

TEST_F(ErrorTextOfALibrary, IsTheStandardsWhereItHasNone) {
    EXPECT_EQ(TextOf(-10004), "time-out");
    script.errorTexts[-10004] = "";
    EXPECT_EQ(TextOf(-10004), "time-out");
    script.onGetErrorText = [](std::int32_t, char*, std::uint32_t*) { return 0; };
    EXPECT_EQ(TextOf(-10004), "time-out");
    script.onGetErrorText = [](std::int32_t, char*, std::uint32_t*) -> std::int32_t { throw 1; };
    EXPECT_EQ(TextOf(-10004), "time-out");
}

TEST_F(ErrorTextOfALibrary, IsBounded) {
    script.onGetErrorText = [](std::int32_t, char* text, std::uint32_t* size) {
        std::memset(text, 'x', *size);
        *size = 0xffffffff;
        return 0;
    };
    EXPECT_EQ(TextOf(-10004), std::string(0x10000, 'x'));
    script.onGetErrorText = [](std::int32_t, char*, std::uint32_t* size) {
        *size += 1;
        return -10001;
    };
    EXPECT_EQ(TextOf(-10004), "time-out");
}

// A library whose function has four parameters used to take the code for the address of a name.
TEST_F(ErrorTextOfALibrary, MayBeAskedForWithTheMakersName) {
    scripted::SerialScript& maker = scripted::MakerSerial();
    maker.maker = "Someone";
    maker.errorTexts[-10004] = "nothing came";
    maker.errorTexts[-20003] = "its own";
    const SerialLibrary library(scripted::MakerSerialFolder() + os::kPathSeparator + scripted::LibraryName("clsermkr"));
    EXPECT_EQ(library.ErrorText(-10004), "nothing came");
    EXPECT_EQ(library.ErrorText(-20003), "its own");
    EXPECT_EQ(library.ErrorText(-10003), "port in use");
    maker.maker = "Someone else";
    EXPECT_EQ(library.ErrorText(-10004), "time-out");
    maker.Reset();
}

}  // namespace
