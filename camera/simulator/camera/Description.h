/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The description file that a camera holds
 */
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "camera/CameraModel.h"
#include "gencp/ByteOrder.h"
#include "simulator/CameraOptions.h"

namespace MarlowSim {

using Sha1Sum = std::array<std::uint8_t, 20>;

struct DescriptionFile {
    gencp::Bytes bytes;
    bool isZip = false;
    Sha1Sum sha1{};
};

std::string DescriptionText(const CameraModel& model, const CameraOptions& options);
DescriptionFile MakeDescriptionFile(const CameraModel& model, const CameraOptions& options);

Sha1Sum Sha1(gencp::ByteView bytes);
gencp::Bytes ZipOneFile(const std::string& name, std::string_view content);

}  // namespace MarlowSim
