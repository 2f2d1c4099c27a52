/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Which camera of those that are there is meant
 */
#include "CameraChoice.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>

#include "Base/GCException.h"
#include "vanto/TlFactory.h"

namespace Vanto {

namespace {

/// "Marlow H2048 (21) on COM_Port#ttyS0" for each, for the end of a sentence.
std::string Listed(const DeviceInfoList& cameras) {
    std::string text;
    for (const CDeviceInfo& camera : cameras)
        text += fmt::format("{}{} on {}", text.empty() ? "" : ", ", PropertyOf(camera, "FriendlyName"),
                            PropertyOf(camera, "PortID"));
    return text;
}

/// Whether a camera is called so; a port also without the serial library's maker before its '#'.
bool IsCalled(const CDeviceInfo& camera, const std::string& name) {
    for (const char* property : {"SerialNumber", "FriendlyName", "FullName", "UserDefinedName", "PortID"})
        if (PropertyOf(camera, property) == name)
            return true;
    const std::string port = PropertyOf(camera, "PortID");
    const std::size_t sign = port.find('#');
    return sign != std::string::npos && port.substr(sign + 1) == name;
}

CDeviceInfo ChooseOne(const std::string& wanted, const std::function<bool(const CDeviceInfo&)>& fits) {
    const DeviceInfoList cameras = FindCameras();
    if (cameras.empty())
        throw NoCamera("There is no camera. 'vanto-cl doctor' says why.");
    DeviceInfoList matches;
    for (const CDeviceInfo& camera : cameras)
        if (fits(camera))
            matches.push_back(camera);
    if (matches.empty())
        throw NoCamera(fmt::format("There is no camera {}. There are: {}.", wanted, Listed(cameras)));
    if (matches.size() > 1)
        throw NoCamera(fmt::format("{} cameras fit {}; say which: {}.", matches.size(), wanted, Listed(matches)));
    return matches.front();
}

}  // namespace

CameraRecord RecordOf(const CDeviceInfo& info) {
    CameraRecord record{PropertyOf(info, "FriendlyName"),
                        PropertyOf(info, "SerialNumber"),
                        PropertyOf(info, "PortID"),
                        PropertyOf(info, "FullName"),
                        PropertyOf(info, "VendorName"),
                        PropertyOf(info, "ModelName"),
                        {}};
    StringList_t names;
    info.GetPropertyNames(names);
    for (const gcstring& name : names)
        record.properties.emplace_back(name.str(), PropertyOf(info, name.c_str()));
    std::sort(record.properties.begin(), record.properties.end());
    return record;
}

/// Looks for cameras on all ports; throws CameraError when that can't be done.
DeviceInfoList FindCameras() {
    try {
        DeviceInfoList cameras;
        CTlFactory::GetInstance().EnumerateDevices(cameras);
        return cameras;
    } catch (const GenICam::GenericException& error) {
        throw CameraError(fmt::format("Cameras can't be looked for: {}", error.GetDescription()));
    }
}

/// The only camera that is there; throws NoCamera when there is none or more than one.
CDeviceInfo ChooseOnly() {
    return ChooseOne("without a name", [](const CDeviceInfo&) { return true; });
}

/// The camera that is called so; throws NoCamera when none or more than one is.
CDeviceInfo ChooseNamed(const std::string& name) {
    return ChooseOne(fmt::format("'{}'", name), [&](const CDeviceInfo& camera) { return IsCalled(camera, name); });
}

/// A record that was found is the camera itself; of one that was made by hand the camera that has all its properties.
CDeviceInfo ChooseFitting(const CDeviceInfo& wanted) {
    if (!wanted.IsUserProvided())
        return wanted;
    return ChooseOne("with these properties", [&](const CDeviceInfo& camera) { return camera.IsSubset(wanted); });
}

}  // namespace Vanto
