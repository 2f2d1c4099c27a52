/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where the features' registers lie: drivers and descriptions know them by number
 */

#include "simulator/CameraRegisters.h"

#include <gtest/gtest.h>

namespace MarlowSim {
namespace {

using gencp::Register;
using namespace registers;

TEST(CameraRegisters, LieOneBehindTheOther) {
    const Register all[] = {kFirmwareVersion,
                            kDeviceReset,
                            kDeviceTemperature,
                            kDeviceScanType,
                            kSensorWidth,
                            kSensorHeight,
                            kWidthMax,
                            kHeightMax,
                            kWidth,
                            kHeight,
                            kOffsetX,
                            kOffsetY,
                            kBinningHorizontal,
                            kBinningVertical,
                            kImageFlags,
                            kPixelFormat,
                            kPixelSize,
                            kTestPattern,
                            kPayloadSize,
                            kAcquisitionMode,
                            kAcquisitionStart,
                            kAcquisitionStop,
                            kAcquisitionFrameRateEnable,
                            kAcquisitionFrameRate,
                            kAcquisitionLineRate,
                            kExposureMode,
                            kExposureAuto,
                            kExposureTime,
                            kGainRaw,
                            kBlackLevelRaw};
    std::uint64_t next = 0x00100000;
    for (const Register& where : all) {
        EXPECT_EQ(where.address, next);
        next = where.End();
    }
    EXPECT_EQ(next, 0x001000B4U);
}

TEST(CameraRegisters, BehindAGapHaveTheirPlaces) {
    const std::pair<Register, std::uint64_t> all[] = {{kGamma, 0x0B8},
                                                      {kLUTEnable, 0x0C0},
                                                      {kLUTIndex, 0x0C4},
                                                      {kTriggerSelector, 0x0C8},
                                                      {kTriggerSoftware, 0x0CC},
                                                      {kTriggerMode, 0x100},
                                                      {kTriggerSource, 0x104},
                                                      {kTriggerActivation, 0x108},
                                                      {kTriggerDelay, 0x10C},
                                                      {kLineSelector, 0x140},
                                                      {kLineMode, 0x150},
                                                      {kLineInverter, 0x154},
                                                      {kLineSource, 0x158},
                                                      {kLineStatus, 0x15C},
                                                      {kClConfiguration, 0x1A0},
                                                      {kClTapGeometry, 0x1A4},
                                                      {kDeviceClockFrequency, 0x1A8},
                                                      {kUserSetSelector, 0x1B0},
                                                      {kUserSetLoad, 0x1B4},
                                                      {kUserSetSave, 0x1B8},
                                                      {kUserSetDefault, 0x1BC},
                                                      {kResultingFrameRate, 0x1C0},
                                                      {kSoftwareTriggerCount, 0x1C4},
                                                      {kLUTValue, 0x400}};
    for (const auto& [where, offset] : all) {
        EXPECT_EQ(where.address, 0x00100000 + offset);
        EXPECT_EQ(where.length, where.address == kGamma.address ? 8U : 4U) << offset;
    }
}

TEST(CameraRegisters, HaveGroupsForEachTriggerLineAndPlaceOfTheTable) {
    EXPECT_EQ(kGroupStride, 16U);
    EXPECT_EQ(kTriggerCount, 3U);
    EXPECT_EQ(kLineCount, 4U);
    EXPECT_EQ(kLutSize, 256U);
    EXPECT_EQ(kSbrmAddress, 0x10000U);
    EXPECT_EQ(kManifestAddress, 0x20000U);
    EXPECT_EQ(kDescriptionAddress, 0x1000000U);
}

}  // namespace
}  // namespace MarlowSim
