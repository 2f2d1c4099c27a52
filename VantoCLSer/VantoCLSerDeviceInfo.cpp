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

#define VANTO_CLSER_PROPERTY(Name)                                                   \
    gcstring CVantoCLSerDeviceInfo::Get##Name() const {                              \
        return GetOrNotAvailable(#Name);                                             \
    }                                                                                \
    CVantoCLSerDeviceInfo& CVantoCLSerDeviceInfo::Set##Name(const gcstring& value) { \
        SetPropertyValue(#Name, value);                                              \
        return *this;                                                                \
    }                                                                                \
    bool CVantoCLSerDeviceInfo::Is##Name##Available() const {                        \
        return GetPropertyAvailable(#Name);                                          \
    }

VANTO_CLSER_PROPERTY(PortID)
VANTO_CLSER_PROPERTY(DeviceID)
VANTO_CLSER_PROPERTY(InitialBaudRate)
VANTO_CLSER_PROPERTY(DeviceXMLFileOverride)
VANTO_CLSER_PROPERTY(DeviceSpecificString)
VANTO_CLSER_PROPERTY(PortSpecificString)

#undef VANTO_CLSER_PROPERTY

}  // namespace Vanto
