/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CameraRecord: a camera behind a port, as a consumer sees it before it opens it
 */
#include "discovery/CameraRecord.h"

#include "CLProtocol/DeviceID.h"

namespace gentl {

namespace {

void SetId(CameraRecord& record) {
    record.id = record.vendor + "-" + record.model + (record.serialNumber.empty() ? "" : "-" + record.serialNumber);
}

}  // namespace

std::string CameraRecord::DisplayName() const {
    if (!userDefinedName.empty())
        return userDefinedName;
    if (vendor.empty() && model.empty())
        return "Unknown camera (" + id + ")";
    return vendor + " " + model + " (" + id + ")";
}

/// Its ID, or another name that nobody could mean a different camera of the port by.
bool CameraRecord::IsNamed(const std::string& name) const {
    return name == id || (!serialNumber.empty() && name == serialNumber) ||
           (!userDefinedName.empty() && name == userDefinedName) || name == DisplayName();
}

/// Of the identifier that a camera's driver answered with; an unreadable one gives empty names.
CameraRecord RecordOfDeviceId(const std::string& deviceId) {
    CLProtocol::CDeviceID parsed;
    parsed.FromString(deviceId.c_str());
    CameraRecord record;
    record.vendor = parsed.GetCameraManufacturer().str();
    record.model = parsed.GetCameraModel().str();
    record.serialNumber = parsed.GetCameraSerialNumber().str();
    record.version = parsed.GetCameraVersion().str();
    SetId(record);
    return record;
}

/// Of a camera that is only known to be behind a port; the port's ID stands for its own until it answers.
CameraRecord RecordOfPort(const std::string& portId) {
    CameraRecord record;
    record.id = portId;
    return record;
}

/// Of a record of an enumeration.
CameraRecord RecordOfInfo(const Vanto::CDeviceInfo& info) {
    CameraRecord record = RecordOfDeviceId(PropertyOf(info, "DeviceID"));
    record.vendor = PropertyOf(info, "VendorName");
    record.model = PropertyOf(info, "ModelName");
    record.serialNumber = PropertyOf(info, "SerialNumber");
    record.userDefinedName = PropertyOf(info, "UserDefinedName");
    record.info = info;
    SetId(record);
    return record;
}

}  // namespace gentl
