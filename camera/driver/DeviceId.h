/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Names of cameras in CLProtocol's form, and what a host asks for with one
 */
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace marlow {

inline constexpr char kManufacturer[] = "Marlow";  ///< the only template, and what the cameras' register says
inline constexpr char kTokenSeparator = '#';

/// A camera as its registers name it.
struct CameraName {
    std::string manufacturer;
    std::string family;
    std::string model;
    std::string version;  ///< of the device, which new firmware changes
    std::string serial;

    std::string ToShortDeviceId() const;
    bool IsSameCameraAs(const CameraName& other) const;
};

/// What a host passes to a probe: a template, or the name of one camera. What is absent fits any camera.
class DeviceRequest {
public:
    explicit DeviceRequest(std::string_view templateOrDeviceId);

    bool Fits(const CameraName& name) const;
    bool NamesOneCamera() const { return m_serial.has_value(); }
    std::string ShortDeviceId() const;

private:
    std::string m_manufacturer;
    std::optional<std::string> m_family;
    std::optional<std::string> m_model;
    std::optional<std::string> m_serial;
};

}  // namespace marlow
