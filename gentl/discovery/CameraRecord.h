/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CameraRecord: a camera behind a port, as a consumer sees it before it opens it
 */
#pragma once

#include <optional>
#include <string>

#include "vanto/Info.h"

namespace gentl {

/// A camera that was found.
struct CameraRecord {
    /// "Vendor-Model-SerialNumber": the same in every session, on whichever port
    std::string id;
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string userDefinedName;
    std::string version;
    /// What the transport layer makes a device of; absent while only the camera's answer is known.
    std::optional<Vanto::CDeviceInfo> info;

    std::string DisplayName() const;
    bool IsNamed(const std::string& name) const;
};

CameraRecord RecordOfDeviceId(const std::string& deviceId);
CameraRecord RecordOfPort(const std::string& portId);
CameraRecord RecordOfInfo(const Vanto::CDeviceInfo& info);

}  // namespace gentl
