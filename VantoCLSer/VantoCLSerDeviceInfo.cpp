/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The exported device info record
 */

#include "vanto/VantoCLSerDeviceInfo.h"

#include "VantoCLSer/VantoCLSerTLInfo.h"

namespace Vanto {

CVantoCLSerDeviceInfo::CVantoCLSerDeviceInfo() {
    SetDeviceClass(kDeviceClass);
}
CVantoCLSerDeviceInfo::CVantoCLSerDeviceInfo(const CDeviceInfo& other) : CDeviceInfo(other) {}
CVantoCLSerDeviceInfo::CVantoCLSerDeviceInfo(const CVantoCLSerDeviceInfo& other) = default;
CVantoCLSerDeviceInfo& CVantoCLSerDeviceInfo::operator=(const CVantoCLSerDeviceInfo& other) = default;
CVantoCLSerDeviceInfo::~CVantoCLSerDeviceInfo() = default;

#define VANTO_CLSER_PROPERTY(Name, property)                                         \
    gcstring CVantoCLSerDeviceInfo::Get##Name() const {                              \
        gcstring value;                                                              \
        return GetPropertyValue(property, value) ? value : PropertyNotAvailable;     \
    }                                                                                \
    CVantoCLSerDeviceInfo& CVantoCLSerDeviceInfo::Set##Name(const gcstring& value) { \
        SetPropertyValue(property, value);                                           \
        return *this;                                                                \
    }                                                                                \
    bool CVantoCLSerDeviceInfo::Is##Name##Available() const {                        \
        return GetPropertyAvailable(property);                                       \
    }

VANTO_CLSER_PROPERTY(PortID, "PortID")
VANTO_CLSER_PROPERTY(DeviceID, "DeviceID")
VANTO_CLSER_PROPERTY(InitialBaudRate, "InitialBaudRate")
VANTO_CLSER_PROPERTY(DeviceXMLFileOverride, "DeviceXMLFileOverride")
VANTO_CLSER_PROPERTY(DeviceSpecificString, "DeviceSpecificString")
VANTO_CLSER_PROPERTY(PortSpecificString, "PortSpecificString")

#undef VANTO_CLSER_PROPERTY

}  // namespace Vanto
