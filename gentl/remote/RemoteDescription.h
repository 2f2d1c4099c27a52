/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a consumer needs and a camera's description lacks
 */
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ports/FeatureMap.h"

namespace gentl {

/// Register space of the producer's own within that of a camera: far behind what cameras use, and still positive for
/// who reads addresses with a sign.
inline constexpr std::uint64_t kAddedRegisters = 0x5643000000000000;
inline constexpr std::uint64_t kServedDescription = 0x5643100000000000;

/// What the features that are added do.
struct AddedFeatures {
    std::function<std::int64_t()> payloadSize;  ///< bytes; null where there is no stream
    std::function<std::int64_t()> width;        ///< of the frame grabber; null where there is no stream
    std::function<std::int64_t()> height;
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string userDefinedName;
};

/// A camera's description as it is served.
struct ServedDescription {
    std::string text;
    std::string vendor;
    std::string model;
    std::string portName = "Device";
    std::array<std::int32_t, 3> schema{1, 0, 0};
    std::array<std::int32_t, 3> version{1, 0, 0};
    std::vector<Feature> added;
};

ServedDescription Complete(std::string description, const AddedFeatures& features);

}  // namespace gentl
