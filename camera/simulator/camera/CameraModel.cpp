/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The models of the family: sensors, limits and pixel formats
 */

#include "camera/CameraModel.h"

#include <array>
#include <stdexcept>
#include <string>

namespace MarlowSim {

namespace {

constexpr PixelFormat kMono8{"Mono8", 0x01080001};
constexpr PixelFormat kMono10{"Mono10", 0x01100003};
constexpr PixelFormat kMono12{"Mono12", 0x01100005};
constexpr PixelFormat kMono16{"Mono16", 0x01100007};
constexpr PixelFormat kBayerRG8{"BayerRG8", 0x01080009};
constexpr PixelFormat kBayerRG10{"BayerRG10", 0x0110000D};
constexpr PixelFormat kBayerRG12{"BayerRG12", 0x01100011};
constexpr PixelFormat kRGB8{"RGB8", 0x02180014};

constexpr std::array kMonoFormats{kMono8, kMono10, kMono12, kMono16};
constexpr std::array kColorFormats{kBayerRG8, kBayerRG10, kBayerRG12, kMono8, kRGB8};
constexpr std::array kLineFormats{kMono8, kMono10, kMono12, kRGB8};

constexpr CameraModel kH2048{
    .name = "H2048",
    .productGuid = "5E1C0A70-2048-4C39-9D0B-7A6F11C2E001",
    .isLineScan = false,
    .isColor = false,
    .sensorWidth = 2048,
    .sensorHeight = 2048,
    .heightMax = 2048,
    .widthMin = 16,
    .widthInc = 8,
    .heightMin = 2,
    .heightInc = 2,
    .offsetXInc = 4,
    .offsetYInc = 2,
    .binningMax = 4,
    .rateMax = 340.0F,
    .exposureMax = 1'000'000,
    .gainMax = 240,
    .clockFrequency = 80'000'000,
    .formats = kMonoFormats,
};

constexpr CameraModel kH4096{
    .name = "H4096",
    .productGuid = "5E1C0A70-4096-4C39-9D0B-7A6F11C2E002",
    .isLineScan = false,
    .isColor = true,
    .sensorWidth = 4096,
    .sensorHeight = 3072,
    .heightMax = 3072,
    .widthMin = 32,
    .widthInc = 16,
    .heightMin = 2,
    .heightInc = 2,
    .offsetXInc = 2,
    .offsetYInc = 2,
    .binningMax = 2,
    .rateMax = 66.0F,
    .exposureMax = 2'000'000,
    .gainMax = 180,
    .clockFrequency = 85'000'000,
    .formats = kColorFormats,
};

constexpr CameraModel kH8192L{
    .name = "H8192L",
    .productGuid = "5E1C0A70-8192-4C39-9D0B-7A6F11C2E003",
    .isLineScan = true,
    .isColor = true,
    .sensorWidth = 8192,
    .sensorHeight = 1,
    .heightMax = 16384,
    .widthMin = 64,
    .widthInc = 32,
    .heightMin = 1,
    .heightInc = 1,
    .offsetXInc = 32,
    .offsetYInc = 1,
    .binningMax = 4,
    .rateMax = 80'000.0F,
    .exposureMax = 10'000,
    .gainMax = 120,
    .clockFrequency = 85'000'000,
    .formats = kLineFormats,
};

constexpr std::array kModels{kH2048, kH4096, kH8192L};

}  // namespace

/**
 * \brief Find a model by its name
 * \throw std::invalid_argument There is none; the text names those that there are
 */
const CameraModel& FindModel(std::string_view name) {
    std::string known;
    for (const CameraModel& model : kModels) {
        if (model.name == name)
            return model;
        known += (known.empty() ? "" : ", ") + std::string(model.name);
    }
    throw std::invalid_argument("there is no model '" + std::string(name) + "', only " + known);
}

}  // namespace MarlowSim
