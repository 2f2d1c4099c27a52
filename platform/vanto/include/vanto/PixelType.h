/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Pixel types, with the values of the GenICam Pixel Format Naming Convention (PFNC)
 */
#pragma once

#include <cstdint>

#include "vanto/VantoTypes.h"

namespace Vanto {

/// Pixel types of PFNC: bits 16 to 23 hold the bits that a pixel takes in memory.
enum EPixelType : std::int32_t {
    PixelType_Undefined = -1,

    PixelType_Mono1p = 0x01010037,
    PixelType_Mono2p = 0x01020038,
    PixelType_Mono4p = 0x01040039,
    PixelType_Mono8 = 0x01080001,
    PixelType_Mono8s = 0x01080002,
    PixelType_Mono10 = 0x01100003,
    PixelType_Mono10Packed = 0x010C0004,
    PixelType_Mono10p = 0x010A0046,
    PixelType_Mono12 = 0x01100005,
    PixelType_Mono12Packed = 0x010C0006,
    PixelType_Mono12p = 0x010C0047,
    PixelType_Mono14 = 0x01100025,
    PixelType_Mono14p = 0x010E0104,
    PixelType_Mono16 = 0x01100007,

    PixelType_BayerGR8 = 0x01080008,
    PixelType_BayerRG8 = 0x01080009,
    PixelType_BayerGB8 = 0x0108000A,
    PixelType_BayerBG8 = 0x0108000B,
    PixelType_BayerGR10 = 0x0110000C,
    PixelType_BayerRG10 = 0x0110000D,
    PixelType_BayerGB10 = 0x0110000E,
    PixelType_BayerBG10 = 0x0110000F,
    PixelType_BayerGR12 = 0x01100010,
    PixelType_BayerRG12 = 0x01100011,
    PixelType_BayerGB12 = 0x01100012,
    PixelType_BayerBG12 = 0x01100013,
    PixelType_BayerGR14 = 0x01100109,
    PixelType_BayerRG14 = 0x0110010A,
    PixelType_BayerGB14 = 0x0110010B,
    PixelType_BayerBG14 = 0x0110010C,
    PixelType_BayerGR16 = 0x0110002E,
    PixelType_BayerRG16 = 0x0110002F,
    PixelType_BayerGB16 = 0x01100030,
    PixelType_BayerBG16 = 0x01100031,
    PixelType_BayerGR10Packed = 0x010C0026,
    PixelType_BayerRG10Packed = 0x010C0027,
    PixelType_BayerGB10Packed = 0x010C0028,
    PixelType_BayerBG10Packed = 0x010C0029,
    PixelType_BayerGR12Packed = 0x010C002A,
    PixelType_BayerRG12Packed = 0x010C002B,
    PixelType_BayerGB12Packed = 0x010C002C,
    PixelType_BayerBG12Packed = 0x010C002D,
    PixelType_BayerBG10p = 0x010A0052,
    PixelType_BayerGB10p = 0x010A0054,
    PixelType_BayerGR10p = 0x010A0056,
    PixelType_BayerRG10p = 0x010A0058,
    PixelType_BayerBG12p = 0x010C0053,
    PixelType_BayerGB12p = 0x010C0055,
    PixelType_BayerGR12p = 0x010C0057,
    PixelType_BayerRG12p = 0x010C0059,

    PixelType_RGB8 = 0x02180014,
    PixelType_BGR8 = 0x02180015,
    PixelType_RGBa8 = 0x02200016,
    PixelType_BGRa8 = 0x02200017,
    PixelType_RGB10 = 0x02300018,
    PixelType_BGR10 = 0x02300019,
    PixelType_RGB12 = 0x0230001A,
    PixelType_BGR12 = 0x0230001B,
    PixelType_RGB14 = 0x0230005E,
    PixelType_BGR14 = 0x0230004A,
    PixelType_RGB16 = 0x02300033,
    PixelType_BGR16 = 0x0230004B,
    PixelType_RGB10V1Packed = 0x0220001C,
    PixelType_RGB10p32 = 0x0220001D,
    PixelType_RGB12V1Packed = 0x02240034,
    PixelType_RGB10p = 0x021E005C,
    PixelType_RGB12p = 0x0224005D,
    PixelType_BGR10p = 0x021E0048,
    PixelType_BGR12p = 0x02240049,
    PixelType_RGB565p = 0x02100035,
    PixelType_BGR565p = 0x02100036,
    PixelType_RGB8_Planar = 0x02180021,
    PixelType_RGB10_Planar = 0x02300022,
    PixelType_RGB12_Planar = 0x02300023,
    PixelType_RGB16_Planar = 0x02300024,

    PixelType_YUV411_8_UYYVYY = 0x020C001E,
    PixelType_YUV422_8_UYVY = 0x0210001F,
    PixelType_YUV422_8 = 0x02100032,
    PixelType_YUV8_UYV = 0x02180020,
    PixelType_YCbCr8_CbYCr = 0x0218003A,
    PixelType_YCbCr422_8 = 0x0210003B,
    PixelType_YCbCr422_8_CbYCrY = 0x02100043,
    PixelType_YCbCr411_8_CbYYCrYY = 0x020C003C
};

/// Bits that a pixel takes in memory; 0 for the undefined type.
constexpr unsigned BitPerPixel(EPixelType pixelType) noexcept {
    return pixelType == PixelType_Undefined ? 0u : (static_cast<std::uint32_t>(pixelType) >> 16) & 0xFFu;
}

}  // namespace Vanto
