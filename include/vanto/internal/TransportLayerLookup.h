/* SPDX-License-Identifier: Apache-2.0 */
/*
 * How transport layers find devices: filters, and the one device that a partial record means
 */
#pragma once

#include "vanto/internal/TransportLayerBase.h"

namespace Vanto {

template <class Interface>
int CTransportLayerBase<Interface>::EnumerateDevices(DeviceInfoList& list, const DeviceInfoList& filter,
                                                     bool addToList) {
    if (!addToList)
        list.clear();
    if (!IsTlAllowed())
        return 0;
    if (filter.empty())
        return InternalEnumerateDevices(list);
    if (!CanSelectThisClass(filter))
        return 0;
    DeviceInfoList all;
    InternalEnumerateDevices(all);
    return FilterDeviceList(all, filter, list);
}

template <class Interface>
bool CTransportLayerBase<Interface>::CanSelectThisClass(const DeviceInfoList& filter) const {
    for (const CDeviceInfo& entry : filter) {
        if (!entry.IsDeviceClassAvailable() || entry.GetDeviceClass() == GetDeviceClass())
            return true;
    }
    return false;
}

template <class Interface>
int CTransportLayerBase<Interface>::FilterDeviceList(const DeviceInfoList& all, const DeviceInfoList& filter,
                                                     DeviceInfoList& out) const {
    int count = 0;
    for (const CDeviceInfo& record : all) {
        for (const CDeviceInfo& entry : filter) {
            if (!MatchesFilter(record, entry))
                continue;
            out.push_back(record);
            ++count;
            break;
        }
    }
    if (!all.empty())
        tracelog::LogTrace(Messages::Log(), tracelog::kDebug,
                           "Filter applied to device list, count of devices before filter step = %d, after filter "
                           "step = %d.",
                           all.size(), count);
    return count;
}

template <class Interface>
void CTransportLayerBase<Interface>::CheckDeviceClass(const CDeviceInfo& partial) const {
    if (!partial.IsDeviceClassAvailable() || partial.GetDeviceClass() == GetDeviceClass())
        return;
    Messages::LogAndThrow((gcstring("The device class ") + partial.GetDeviceClass() +
                           " is not supported by this transport layer. This transport layer supports " +
                           GetDeviceClass() + ".")
                              .str());
}

template <class Interface>
void CTransportLayerBase<Interface>::FindDevice(const CDeviceInfo& partial, CDeviceInfo& result, bool allowAmbiguous) {
    if (!IsTlAllowed())
        throw VANTO_EXCEPTION(RuntimeException, Messages::kSource)(
            "Device not accessible. Transport layer is restricted by the environment");
    if (HasDeviceSpecificDiscovery(partial)) {
        result = FindDeviceSpecific(partial);
        if (MatchesFilter(result, partial))
            return;
        throw VANTO_EXCEPTION(RuntimeException, Messages::kSource)(
            "The found device does not contain all the provided device info properties.");
    }
    CheckDeviceClass(partial);
    result = SelectDevice(partial, allowAmbiguous);
    gcstring bornFree;
    if (partial.GetPropertyValue("_BornFree", bornFree)) {
        result.SetPropertyValue("_BornFree", bornFree);
        // The transport layer's own mark: a creation hook that changes nothing has not modified the record.
        result.GetInfoImpl().ClearAccessFlags();
    }
}

template <class Interface>
CDeviceInfo CTransportLayerBase<Interface>::SelectDevice(const CDeviceInfo& partial, bool allowAmbiguous) {
    DeviceInfoList all;
    if (InternalEnumerateDevices(all) == 0)
        Messages::LogAndThrow(
            (gcstring("Cannot find device, no devices of ") + GetDeviceClass() + " available.").str());
    DeviceInfoList filter;
    filter.push_back(partial);
    DeviceInfoList matches;
    const int count = FilterDeviceList(all, filter, matches);
    if (count == 0)
        Messages::LogAndThrow(
            "No device contains the provided device info properties. The number of possible devices is " +
            std::to_string(all.size()) + ".");
    if (count != 1 && !allowAmbiguous)
        Messages::LogAndThrow("Ambiguous device info properties. " + std::to_string(count) + " out of " +
                              std::to_string(all.size()) + " devices contain the provided device info properties.");
    return matches.front();
}

template <class Interface>
bool CTransportLayerBase<Interface>::IsDeviceAccessible(const CDeviceInfo& info, AccessModeSet mode,
                                                        AccessibilityCode* accessibility) {
    if (!info.IsUserProvided())
        return InternalIsDeviceAccessible(info, mode, accessibility);
    CheckDeviceClass(info);
    CDeviceInfo resolved;
    FindDevice(info, resolved, false);
    return InternalIsDeviceAccessible(resolved, mode, accessibility);
}

}  // namespace Vanto
