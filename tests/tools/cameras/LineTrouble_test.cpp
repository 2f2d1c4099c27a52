/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of sentences for failures of the line
 */
#include "cameras/LineTrouble.h"

#include <gtest/gtest.h>

namespace {

using tools::LineTroubleText;

TEST(LineTrouble, NamesThePortAndWhatToLookAt) {
    EXPECT_EQ(
        LineTroubleText("Port 'COM_Port#ttyUSB0': function 'clpReadRegister' of '/lib(1)/x.so' failed: The serial "
                        "library failed: clSerialRead returned -10004. (-10004)"),
        "The camera on COM_Port#ttyUSB0 does not answer any more. Is its cable plugged in, and is it switched on?");
}

TEST(LineTrouble, IsTheSameForAccessesAfterTheOneThatFoundOut) {
    EXPECT_EQ(
        LineTroubleText("Device 'COM_Port#ttyUSB0' already removed/disconnected."),
        "The camera on COM_Port#ttyUSB0 does not answer any more. Is its cable plugged in, and is it switched on?");
}

TEST(LineTrouble, IsNothingWithoutAPortOrAKnownCode) {
    EXPECT_EQ(LineTroubleText("The serial library failed: clSerialRead returned -10004. (-10004)"), "");
    EXPECT_EQ(LineTroubleText("Port 'x': refused (-2003)"), "");
    EXPECT_EQ(LineTroubleText("Port 'x': refused"), "");
    EXPECT_EQ(LineTroubleText("Port 'x"), "");
}

}  // namespace
