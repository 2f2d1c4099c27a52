/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The device info record that enumeration makes of a camera it found
 */

#include "VantoCLSer/VantoCLSerTlDeviceInfoImpl.h"

#include "CLProtocol/DeviceID.h"
#include "VantoCLSer/VantoCLSerTLInfo.h"
#include "VantoCLSer/base/Log.h"

namespace Vanto {

using CLProtocol::CDeviceID;

namespace {

// Unique per port and camera.
gcstring MakeFullName(const gcstring& portId, const CDeviceID& id) {
    const gcstring separator = CDeviceID::GetTokenSeperator();
    return portId + "|" + id.GetDriverDirectory(true) + separator + id.GetDriverFileName() + separator +
           id.GetCameraManufacturer() + separator + id.GetCameraFamily() + separator + id.GetCameraModel() + separator +
           id.GetCameraSerialNumber();
}

gcstring MakeFriendlyName(const CDeviceID& id) {
    gcstring name = id.GetCameraManufacturer() + " " + id.GetCameraModel();
    if (!id.GetCameraSerialNumber().empty())
        name += " (" + id.GetCameraSerialNumber() + ")";
    return name;
}

}  // namespace

/**
 * \brief Make the complete record of a camera
 * \param[in] portId The port that it was found on
 * \param[in] deviceId What probing returned; an identifier that can't be parsed is logged and yields a record
 *            whose names come from an unparsed identifier
 */
CVantoCLSerTlDeviceInfoImpl::CVantoCLSerTlDeviceInfoImpl(const gcstring& portId, const gcstring& deviceId) {
    GetInfoImpl().ClearUserProvidedFlag();
    CDeviceID id;
    if (!id.FromString(deviceId))
        LogTrace(TlLog(), tracelog::kWarning, "Could not parse DeviceID '%s' for PortID '%s'.", deviceId, portId);
    SetPortID(portId);
    SetDeviceID(deviceId);
    SetFullName(MakeFullName(portId, id));
    SetVendorName(id.GetCameraManufacturer());
    SetModelName(id.GetCameraModel());
    SetUserDefinedName("");
    SetSerialNumber(id.GetCameraSerialNumber());
    SetFriendlyName(MakeFriendlyName(id));
    SetDeviceClass(kDeviceClass);
    SetDeviceFactory(GetTLInfo().GetFullName());
    GetInfoImpl().ClearAccessFlags();
}

CVantoCLSerTlDeviceInfoImpl::~CVantoCLSerTlDeviceInfoImpl() = default;

}  // namespace Vanto
