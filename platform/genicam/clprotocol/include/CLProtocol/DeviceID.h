/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CDeviceID: the text that names a camera, its driver included
 */
#pragma once

#include "Base/GCString.h"
#include "Base/GCStringVector.h"
#include "CLProtocol/CLException.h"

namespace CLProtocol {

/// A CLProtocol device identifier or template:
/// `DriverDirectory#DriverFileName#Manufacturer#Family#Model[#Version][#SerialNumber]`. Six tokens end in the serial
/// number, seven in version and serial number. All getters of an unparsed identifier yield the empty string. Where this
/// project's own driver stands in it, "%23" in a token is a '#' of the camera's, and getters say so.
class CLPROTOCOL_API CDeviceID {
public:
    CDeviceID() = default;
    /// Parses as FromString does.
    explicit CDeviceID(const GenICam::gcstring& deviceId) { FromString(deviceId); }

    static GenICam::gcstring GetTokenSeperator();

    bool FromString(const GenICam::gcstring& deviceId);
    GenICam::gcstring ToString() const;

    GenICam::gcstring GetDriverDirectory(bool replaceEnvironmentVariables = false) const;
    /// The driver's file, without folder and system-dependent ending.
    GenICam::gcstring GetDriverFileName() const { return m_driverFileName; }
    GenICam::gcstring GetDriverPath() const;
    /// The camera's maker.
    GenICam::gcstring GetCameraManufacturer() const;
    /// The camera's family.
    GenICam::gcstring GetCameraFamily() const;
    /// The camera's model.
    GenICam::gcstring GetCameraModel() const;
    /// The camera's version; empty in identifiers of six tokens.
    GenICam::gcstring GetCameraVersion() const;
    /// The camera's serial number; empty in templates.
    GenICam::gcstring GetCameraSerialNumber() const;
    GenICam::gcstring GetShortDeviceID() const;
    bool IsMatchingTemplate(const GenICam::gcstring& deviceIdTemplate) const;

private:
    GenICam::gcstring m_driverDirectory;
    GenICam::gcstring m_driverFileName;
    GenICam::gcstring m_manufacturer;
    GenICam::gcstring m_family;
    GenICam::gcstring m_model;
    GenICam::gcstring m_version;
    GenICam::gcstring m_serialNumber;
    std::size_t m_tokens = 0;
};

}  // namespace CLProtocol
