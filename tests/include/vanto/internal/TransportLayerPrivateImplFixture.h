/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What tests of the frame of transport layers have in common
 */
#pragma once

#include "vanto/internal/TransportLayerPrivateImpl.h"

#include "tests/VantoCLSer/Fixture.h"
#include "tests/include/vanto/internal/TestTl.h"

namespace clser_test {

constexpr char kFrameSource[] = "include/vanto/internal/TransportLayerPrivateImpl";

inline CDeviceInfo Info(const char* serialNumber, const char* deviceClass = nullptr) {
    CDeviceInfo info;
    if (serialNumber != nullptr)
        info.SetSerialNumber(serialNumber);
    if (deviceClass != nullptr)
        info.SetDeviceClass(deviceClass);
    return info;
}

// As a transport layer makes it.
inline CDeviceInfo Found(const char* serialNumber) {
    CDeviceInfo info = Info(serialNumber, "MarlowCameraLink");
    info.SetFullName(gcstring("full ") + serialNumber).SetVendorName("Marlow");
    info.GetInfoImpl().ClearUserProvidedFlag();
    info.GetInfoImpl().ClearAccessFlags();
    return info;
}

inline DeviceInfoList List(const std::vector<CDeviceInfo>& infos) {
    DeviceInfoList list;
    for (const CDeviceInfo& info : infos)
        list.push_back(info);
    return list;
}

class Frame : public PluginTest {
protected:
    Frame() { m_tl.devices = List({Found("1"), Found("2"), Found("3")}); }
    ~Frame() override { PrivateTestDevice::onCreateNodeMap = nullptr; }

    std::vector<std::string> Enumerate(const std::vector<CDeviceInfo>& filter) {
        DeviceInfoList list;
        const int count = m_tl.EnumerateDevices(list, List(filter));
        EXPECT_EQ(count, static_cast<int>(list.size()));
        return SerialNumbers(list);
    }
    static std::vector<std::string> SerialNumbers(const DeviceInfoList& list) {
        std::vector<std::string> numbers;
        for (const CDeviceInfo& info : list)
            numbers.push_back(info.GetSerialNumber().str());
        return numbers;
    }
    // The text is logged at error and thrown.
    void ExpectLoggedAndThrown(const Thrown& thrown, const std::string& text) const {
        EXPECT_EQ(thrown, (Thrown{"RuntimeException", text, kFrameSource}));
        EXPECT_EQ(m_log.CountText(text, kError), 1u);
    }

    TestTl m_tl;
};

}  // namespace clser_test
