/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of taking the driver out of a DeviceID
 */

#include "ShortForm.h"

#include <gtest/gtest.h>

namespace {

using CLProtocol::ShortForm;

TEST(ShortForm, LeavesOutTheDriver) {
    for (const char* driver :
         {"/opt/x#libX.so#", "C:\\Drivers#X.dll#", "#libX.so#", "$(X)/y#libX.debug.so#", "x#X.DLL#"})
        for (const char* device : {"Marlow", "Marlow#Heron", "Marlow#Heron#H2048#V1#17", "Marlow#Heron#H2048##1-7/3"})
            EXPECT_EQ(ShortForm(std::string(driver) + device), device);
}

TEST(ShortForm, KnowsALongIdByItsTokensAlone) {
    EXPECT_EQ(ShortForm("x#driver#Marlow#Heron#H2048#17"), "Marlow#Heron#H2048#17");
    EXPECT_EQ(ShortForm("x#driver#Marlow#Heron#H2048#V1#17"), "Marlow#Heron#H2048#V1#17");
}

TEST(ShortForm, LeavesShortFormsAsTheyAre) {
    for (const char* text :
         {"", "Marlow", "Marlow#Heron", "Marlow#so", "Marlow#Heron#H2048#V1#17", "a#libX.so",
          "Marlow#Heron#H2048#17.so", "1#2#3#4#5#6#7#8", "Marlow#.so#H2048", "Marlow#Heron.sox#H2048"})
        EXPECT_EQ(ShortForm(text), text);
}

}  // namespace
