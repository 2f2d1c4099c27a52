/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Registers of the cameras' features: address and length together
 */
#pragma once

#include "gencp/Registers.h"

namespace MarlowSim::registers {

using gencp::Register;

// Where the maps lie that the bootstrap registers point to.
inline constexpr std::uint64_t kSbrmAddress = 0x0001'0000;
inline constexpr std::uint64_t kManifestAddress = 0x0002'0000;
inline constexpr std::uint64_t kDescriptionAddress = 0x0100'0000;

inline constexpr std::uint64_t kBase = 0x0010'0000;
inline constexpr Register kFirmwareVersion{kBase + 0x000, 64};
inline constexpr Register kDeviceReset{kBase + 0x040, 4};
inline constexpr Register kDeviceTemperature{kBase + 0x044, 4};  ///< tenths of a degree Celsius, signed
inline constexpr Register kDeviceScanType{kBase + 0x048, 4};
inline constexpr Register kSensorWidth{kBase + 0x04C, 4};
inline constexpr Register kSensorHeight{kBase + 0x050, 4};
inline constexpr Register kWidthMax{kBase + 0x054, 4};
inline constexpr Register kHeightMax{kBase + 0x058, 4};
inline constexpr Register kWidth{kBase + 0x05C, 4};
inline constexpr Register kHeight{kBase + 0x060, 4};
inline constexpr Register kOffsetX{kBase + 0x064, 4};
inline constexpr Register kOffsetY{kBase + 0x068, 4};
inline constexpr Register kBinningHorizontal{kBase + 0x06C, 4};
inline constexpr Register kBinningVertical{kBase + 0x070, 4};
inline constexpr Register kImageFlags{kBase + 0x074, 4};   ///< value bit 0 ReverseX, bit 1 ReverseY
inline constexpr Register kPixelFormat{kBase + 0x078, 4};  ///< PFNC value
inline constexpr Register kPixelSize{kBase + 0x07C, 4};    ///< bits
inline constexpr Register kTestPattern{kBase + 0x080, 4};
inline constexpr Register kPayloadSize{kBase + 0x084, 4};
inline constexpr Register kAcquisitionMode{kBase + 0x088, 4};
inline constexpr Register kAcquisitionStart{kBase + 0x08C, 4};
inline constexpr Register kAcquisitionStop{kBase + 0x090, 4};
inline constexpr Register kAcquisitionFrameRateEnable{kBase + 0x094, 4};
inline constexpr Register kAcquisitionFrameRate{kBase + 0x098, 4};  ///< IEEE 754, Hz
inline constexpr Register kAcquisitionLineRate{kBase + 0x09C, 4};   ///< IEEE 754, Hz
inline constexpr Register kExposureMode{kBase + 0x0A0, 4};
inline constexpr Register kExposureAuto{kBase + 0x0A4, 4};
inline constexpr Register kExposureTime{kBase + 0x0A8, 4};   ///< tenths of a microsecond
inline constexpr Register kGainRaw{kBase + 0x0AC, 4};        ///< tenths of a decibel
inline constexpr Register kBlackLevelRaw{kBase + 0x0B0, 4};  ///< of 4095
inline constexpr Register kGamma{kBase + 0x0B8, 8};          ///< IEEE 754
inline constexpr Register kLUTEnable{kBase + 0x0C0, 4};
inline constexpr Register kLUTIndex{kBase + 0x0C4, 4};
inline constexpr Register kTriggerSelector{kBase + 0x0C8, 4};
inline constexpr Register kTriggerSoftware{kBase + 0x0CC, 4};

// One group of the following four for each trigger.
inline constexpr std::uint32_t kTriggerCount = 3;
inline constexpr std::uint32_t kGroupStride = 16;
inline constexpr Register kTriggerMode{kBase + 0x100, 4};
inline constexpr Register kTriggerSource{kBase + 0x104, 4};
inline constexpr Register kTriggerActivation{kBase + 0x108, 4};
inline constexpr Register kTriggerDelay{kBase + 0x10C, 4};  ///< tenths of a microsecond

// One group of the last four for each line.
inline constexpr std::uint32_t kLineCount = 4;
inline constexpr Register kLineSelector{kBase + 0x140, 4};
inline constexpr Register kLineMode{kBase + 0x150, 4};
inline constexpr Register kLineInverter{kBase + 0x154, 4};
inline constexpr Register kLineSource{kBase + 0x158, 4};
inline constexpr Register kLineStatus{kBase + 0x15C, 4};

inline constexpr Register kClConfiguration{kBase + 0x1A0, 4};
inline constexpr Register kClTapGeometry{kBase + 0x1A4, 4};
inline constexpr Register kDeviceClockFrequency{kBase + 0x1A8, 4};  ///< Hz
inline constexpr Register kUserSetSelector{kBase + 0x1B0, 4};
inline constexpr Register kUserSetLoad{kBase + 0x1B4, 4};
inline constexpr Register kUserSetSave{kBase + 0x1B8, 4};
inline constexpr Register kUserSetDefault{kBase + 0x1BC, 4};
inline constexpr Register kResultingFrameRate{kBase + 0x1C0, 4};  ///< IEEE 754, Hz
inline constexpr Register kSoftwareTriggerCount{kBase + 0x1C4, 4};

inline constexpr std::uint32_t kLutSize = 256;
inline constexpr Register kLUTValue{kBase + 0x400, 4};  ///< the first of kLutSize

}  // namespace MarlowSim::registers
