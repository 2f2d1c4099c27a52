/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Info records of cameras: reading them, and making those that the transport layer would make
 */
#include "cameras/Records.h"

#include <algorithm>
#include <filesystem>

#include "CLProtocol/CLPort.h"
#include "CLProtocol/DeviceID.h"
#include "configuration/ConfigurationPath.h"
#include "configuration/ConfigurationReader.h"
#include "error/ExitCode.h"
#include "output/Text.h"

namespace tools {

namespace {

using CLProtocol::CDeviceID;

constexpr const char* kManufacturer = "Marlow";

std::string FullNameOf(const CameraAddress& address, const CDeviceID& id) {
    const std::string separator = CDeviceID::GetTokenSeperator().str();
    std::string name = address.portId + "|" + id.GetDriverDirectory(true).str();
    for (const GenICam::gcstring& part : {id.GetDriverFileName(), id.GetCameraManufacturer(), id.GetCameraFamily(),
                                          id.GetCameraModel(), id.GetCameraSerialNumber()})
        name += separator + part.str();
    return name;
}

/// How well an entry fits a camera, as the transport layer rates it; 0 when it does not.
int RatingOf(const PortEntry& entry, const CDeviceID& id) {
    if (id.GetCameraManufacturer() != entry.manufacturer.text)
        return 0;
    if (id.GetCameraFamily() != entry.family.text)
        return 1;
    return id.GetCameraModel() != entry.model.text ? 2 : 3;
}

}  // namespace

std::string NameOf(const Vanto::CDeviceInfo& record) {
    return Printable(PropertyOf(record, "FriendlyName"));
}

CameraAddress AddressOf(const Vanto::CDeviceInfo& record) {
    return {PropertyOf(record, "PortID"), PropertyOf(record, "DeviceID")};
}

Vanto::CDeviceInfo RecordOf(const CameraAddress& address) {
    const CDeviceID id(address.deviceId);
    const GenICam::gcstring serialNumber = id.GetCameraSerialNumber();
    GenICam::gcstring friendly = id.GetCameraManufacturer() + " " + id.GetCameraModel();
    if (!serialNumber.empty())
        friendly += " (" + serialNumber + ")";
    Vanto::CDeviceInfo record;
    record.SetPropertyValue("PortID", address.portId);
    record.SetPropertyValue("DeviceID", address.deviceId);
    record.SetFullName(FullNameOf(address, id)).SetVendorName(id.GetCameraManufacturer());
    record.SetModelName(id.GetCameraModel()).SetUserDefinedName("").SetSerialNumber(serialNumber);
    record.SetFriendlyName(friendly).SetDeviceClass(kDeviceClass);
    return record;
}

/**
 * \brief Complete a record, so that the transport layer takes it as one of its own
 * \param[in,out] record Gets what the port configuration file says at present of its port and camera
 * \return False when its port is not enabled or no driver that is used at present knows it
 */
bool Complete(const TransportLayer& layer, Vanto::CDeviceInfo& record) {
    const CameraAddress address = AddressOf(record);
    const CDeviceID id(address.deviceId);
    const std::vector<std::string> templates = UsableTemplates();
    const bool hasDriver =
        std::ranges::any_of(templates, [&](const std::string& one) { return id.IsMatchingTemplate(one); });
    const std::vector<PortEntry> entries = EnabledEntriesOf(address.portId);
    if (layer.Get() == nullptr || !hasDriver || entries.empty())
        return false;
    const auto best = std::ranges::max_element(entries, {}, [&](const PortEntry& one) { return RatingOf(one, id); });
    if (RatingOf(*best, id) > 0) {
        record.SetPropertyValue("DeviceSpecificString", best->deviceSpecificString.text);
        record.SetPropertyValue("InitialBaudRate", best->baudRate.text);
    }
    record.SetDeviceFactory(layer.Get()->GetTlInfo().GetFullName());
    record.GetInfoImpl().ClearUserProvidedFlag();
    record.GetInfoImpl().ClearAccessFlags();
    return true;
}

std::vector<PortEntry> EnabledEntriesOf(const std::string& portId) {
    std::vector<PortEntry> enabled;
    try {
        const PortConfiguration configuration = ReadPortConfiguration(FindConfigurationPath().path);
        if (configuration.wellFormed)
            std::ranges::copy_if(configuration.entries, std::back_inserter(enabled),
                                 [&](const PortEntry& entry) { return entry.IsEnabled() && entry.id.text == portId; });
    } catch (const ToolError&) {  // whoever looks for all cameras says why
    }
    return enabled;
}

std::vector<std::string> UsableTemplates() {
    GenICam::gcstring_vector all;
    CLProtocol::CCLPort::GetDeviceIDTemplates(all);
    std::vector<std::string> usable;
    for (const GenICam::gcstring& one : all)
        if (CDeviceID(one).GetCameraManufacturer() == kManufacturer)
            usable.push_back(one.str());
    return usable;
}

}  // namespace tools
