/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The description file that a camera holds
 */
#pragma once

#include <cstdint>
#include <string>

#include "base/Sha1.h"
#include "camera/CameraModel.h"
#include "gencp/ByteOrder.h"
#include "simulator/CameraOptions.h"

namespace MarlowSim {

struct DescriptionFile {
    gencp::Bytes bytes;
    bool isZip = false;
    bool isListed = true;  ///< the manifest has an entry for it
    base::Sha1Sum sha1{};
};

std::string DescriptionText(const CameraModel& model, const CameraOptions& options);
DescriptionFile MakeDescriptionFile(const CameraModel& model, const CameraOptions& options);

gencp::Bytes ZipOneFile(const std::string& name, std::string_view content);

}  // namespace MarlowSim
