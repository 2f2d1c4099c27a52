/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The models of the family: sensors, limits and pixel formats
 */
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace MarlowSim {

struct PixelFormat {
    std::string_view name;
    std::uint32_t value;  ///< PFNC

    /// Bits that a pixel takes in memory; PFNC keeps them in the third byte.
    constexpr std::uint32_t Bits() const { return (value >> 16) & 0xFF; }
};

struct CameraModel {
    std::string_view name;
    std::string_view productGuid;
    bool isLineScan;
    bool isColor;
    std::uint32_t sensorWidth;   ///< pixels
    std::uint32_t sensorHeight;  ///< lines
    std::uint32_t heightMax;     ///< lines of an image, without binning
    std::uint32_t widthMin;
    std::uint32_t widthInc;
    std::uint32_t heightMin;
    std::uint32_t heightInc;
    std::uint32_t offsetXInc;
    std::uint32_t offsetYInc;
    std::uint32_t binningMax;
    float rateMax;                         ///< images or lines a second
    std::uint32_t exposureMax;             ///< microseconds
    std::uint32_t gainMax;                 ///< tenths of a decibel
    std::uint32_t clockFrequency;          ///< Hz
    std::span<const PixelFormat> formats;  ///< the first is that of the factory
};

const CameraModel& FindModel(std::string_view name);

}  // namespace MarlowSim
