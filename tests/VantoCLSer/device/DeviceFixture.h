/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A transport layer with one scripted camera, whose description a test writes
 */
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "GenApi/GenApi.h"
#include "VantoCLSer/VantoCLSerDevice.h"
#include "VantoCLSer/VantoCLSerTL.h"
#include "VantoCLSer/VantoCLSerTLInfo.h"
#include "VantoCLSer/VantoCLSerTlDeviceInfoImpl.h"
#include "scripted/Scripted.h"
#include "vanto/LogListener.h"

namespace clser_test {

inline constexpr char kPortId[] = "Scripted#Port0";
inline constexpr char kCamera[] = "Marlow#Heron#H2048#1234";
inline constexpr char kFriendlyName[] = "Marlow H2048 (1234)";
inline constexpr std::int64_t kWidthAddress = 0x1000;
inline constexpr std::int64_t kRateAddress = 0x2000;
inline constexpr std::int64_t kSerialNumberAddress = 0x144;

struct RateEntry {
    std::string name;
    int value;
};

inline std::string Register(const std::string& kind, const std::string& name, std::int64_t address, int length,
                            const std::string& rest) {
    return "<" + kind + " Name=\"" + name + "\"><Address>" + std::to_string(address) + "</Address><Length>" +
           std::to_string(length) + "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>" + rest + "</" + kind +
           ">\n";
}

inline std::string IntReg(const std::string& name, std::int64_t address) {
    return Register("IntReg", name, address, 4, "<Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>");
}

inline std::string BaudRateNodes(const std::vector<RateEntry>& entries) {
    std::string text = "<Enumeration Name=\"ClSerialPortBaudRate\">";
    for (const RateEntry& entry : entries)
        text += "<EnumEntry Name=\"" + entry.name + "\"><Value>" + std::to_string(entry.value) + "</Value></EnumEntry>";
    return text + "<pValue>RateReg</pValue></Enumeration>\n" + IntReg("RateReg", kRateAddress);
}

inline const std::vector<RateEntry>& AllRates() {
    static const std::vector<RateEntry> entries = {{"Baud9600", 15},   {"Baud19200", 17},  {"Baud38400", 18},
                                                   {"Baud57600", 19},  {"Baud115200", 20}, {"Baud230400", 21},
                                                   {"Baud460800", 22}, {"Baud921600", 23}};
    return entries;
}

/// A description with the nodes given, Width and DeviceID.
inline std::string Description(const std::string& nodes, const std::string& comment = "") {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + comment +
           "<RegisterDescription xmlns=\"http://www.genicam.org/GenApi/Version_1_1\" ModelName=\"H2048\" "
           "VendorName=\"Marlow\" StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" "
           "SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" ToolTip=\"\" "
           "ProductGuid=\"11111111-1111-1111-1111-111111111111\" "
           "VersionGuid=\"22222222-2222-2222-2222-222222222222\">\n"
           "<Category Name=\"Root\"><pFeature>Width</pFeature></Category>\n" +
           IntReg("Width", kWidthAddress) + Register("StringReg", "DeviceID", kSerialNumberAddress, 64, "") + nodes +
           "<Port Name=\"Device\"/>\n</RegisterDescription>\n";
}

inline constexpr char kInjected[] =
    "<RegisterDescription><Integer Name=\"Injected\"><Value>7</Value></Integer></RegisterDescription>";

class DeviceTest : public testing::Test {
protected:
    DeviceTest() {
        scripted::Serial().SetPorts(2, {kCamera, ""});
        SetXml(Description(BaudRateNodes(AllRates())));
        scripted::Driver().SetRegister(kSerialNumberAddress, "1234");
        scripted::Driver().SetRegister(kRateAddress, std::string("\0\0\0\x0f", 4));
    }

    static void SetXml(const std::string& xml) {
        scripted::DriverScript& driver = scripted::Driver();
        const std::lock_guard lock(driver.mutex);
        driver.xml[driver.xmlIds] = xml;
    }

    static std::string DeviceId() { return scripted::FullDeviceId(kCamera); }

    Vanto::CVantoCLSerTlDeviceInfoImpl Info() const {
        Vanto::CVantoCLSerTlDeviceInfoImpl info(kPortId, DeviceId());
        info.GetInfoImpl().ClearAccessFlags();
        return info;
    }

    static void LetCameraHoldNoDescription() {
        scripted::Driver().onGetXmlIds = [](auto...) { return -20102; };
    }

    /// As enumeration would: complete, not the user's.
    Vanto::IVantoDevice* CreateDevice() { return m_tl->CreateDevice(Info()); }

    static std::int64_t RateRegister() {
        const std::string bytes = scripted::Driver().GetRegister(kRateAddress, 4);
        return static_cast<unsigned char>(bytes[3]);
    }

    static GenApi::CIntegerPtr Integer(Vanto::IVantoDevice* device, const char* name) {
        return device->GetNodeMap()->GetNode(name);
    }

    std::size_t Logged(std::uint32_t level, const std::string& text) const { return m_log.CountText(text, level); }

    scripted::Environment m_environment;
    Vanto::tracelog::LogRecorder m_log{"*:trace"};
    std::unique_ptr<Vanto::CVantoCLSerTl> m_tl = std::make_unique<Vanto::CVantoCLSerTl>();
};

/// The description of the GenICam exception that an action throws; empty, with a failure, when it throws none.
template <class Exception, class Action>
std::string DescriptionOf(const Action& action) {
    try {
        action();
    } catch (const Exception& error) {
        return error.GetDescription();
    } catch (const std::exception& error) {
        ADD_FAILURE() << "another exception: " << error.what();
        return {};
    }
    ADD_FAILURE() << "no exception";
    return {};
}

}  // namespace clser_test
