/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the record that enumeration makes of a camera
 */

#include "VantoCLSer/VantoCLSerTlDeviceInfoImpl.h"

#include "CLProtocol/DeviceID.h"
#include "tests/VantoCLSer/Fixture.h"

namespace Vanto {
namespace {

using namespace clser_test;
using testing::ElementsAre;
using testing::IsEmpty;

class TlDeviceInfo : public testing::Test {
protected:
    std::size_t CountWarnings() const {
        return m_log.CountFormat("Could not parse DeviceID '%s' for PortID '%s'.", kWarning);
    }

    tracelog::LogRecorder m_log{"Vanto.CLSer.TL:trace"};
    const std::string m_deviceId = "/drivers#libD.so#Marlow#Heron#H2048#1234";
};

TEST_F(TlDeviceInfo, IsMadeByTheTransportLayer) {
    const CVantoCLSerTlDeviceInfoImpl info("port#1", m_deviceId);
    EXPECT_FALSE(info.IsUserProvided());
    EXPECT_FALSE(CDeviceInfo(info).IsUserProvided());
}

TEST_F(TlDeviceInfo, HoldsPortAndDevice) {
    const CVantoCLSerTlDeviceInfoImpl info("port#1", m_deviceId);
    EXPECT_EQ(info.GetPortID(), "port#1");
    EXPECT_EQ(info.GetDeviceID(), m_deviceId.c_str());
    EXPECT_EQ(CountWarnings(), 0u);
}

TEST_F(TlDeviceInfo, HasAFullNamePerPortAndCamera) {
    const CVantoCLSerTlDeviceInfoImpl info("port#1", m_deviceId);
    EXPECT_EQ(info.GetFullName(), "port#1|/drivers#libD.so#Marlow#Heron#H2048#1234");
}

TEST_F(TlDeviceInfo, LeavesTheVersionOutOfTheFullName) {
    const CVantoCLSerTlDeviceInfoImpl info("port#1", "/drivers#libD.so#Marlow#Heron#H2048#V2#1234");
    EXPECT_EQ(info.GetFullName(), "port#1|/drivers#libD.so#Marlow#Heron#H2048#1234");
}

TEST_F(TlDeviceInfo, ReplacesVariablesInTheFullNameOnly) {
    const scripted::ScopedVariable variable("VANTO_TEST_DRIVERS", "/replaced");
    const gcstring deviceId = "$(VANTO_TEST_DRIVERS)#libD.so#Marlow#Heron#H2048#1234";
    const CVantoCLSerTlDeviceInfoImpl info("port#1", deviceId);
    EXPECT_EQ(info.GetFullName(), "port#1|/replaced#libD.so#Marlow#Heron#H2048#1234");
    EXPECT_EQ(info.GetDeviceID(), deviceId);
}

TEST_F(TlDeviceInfo, NamesTheCamera) {
    const CVantoCLSerTlDeviceInfoImpl info("port#1", m_deviceId);
    EXPECT_EQ(info.GetVendorName(), "Marlow");
    EXPECT_EQ(info.GetModelName(), "H2048");
    EXPECT_EQ(info.GetSerialNumber(), "1234");
    EXPECT_EQ(info.GetFriendlyName(), "Marlow H2048 (1234)");
    EXPECT_TRUE(info.IsUserDefinedNameAvailable());
    EXPECT_EQ(info.GetUserDefinedName(), "");
}

TEST_F(TlDeviceInfo, LeavesParenthesesOutWithoutASerialNumber) {
    const CVantoCLSerTlDeviceInfoImpl info("port#1", "/drivers#libD.so#Marlow#Heron#H2048");
    EXPECT_EQ(info.GetFriendlyName(), "Marlow H2048");
    EXPECT_EQ(info.GetSerialNumber(), "");
    EXPECT_EQ(info.GetFullName(), "port#1|/drivers#libD.so#Marlow#Heron#H2048#");
}

TEST_F(TlDeviceInfo, IsOfTheTransportLayer) {
    const CVantoCLSerTlDeviceInfoImpl info("port#1", m_deviceId);
    EXPECT_EQ(info.GetDeviceClass(), "MarlowCameraLink");
    EXPECT_EQ(info.GetDeviceFactory(), "Camera Link/MarlowCameraLink 3.2.2.3032");
}

TEST_F(TlDeviceInfo, HasNothingElse) {
    StringList_t names;
    EXPECT_EQ(CVantoCLSerTlDeviceInfoImpl("port#1", m_deviceId).GetPropertyNames(names), 10);
}

TEST_F(TlDeviceInfo, CountsNothingAsAccessed) {
    const CVantoCLSerTlDeviceInfoImpl info("port#1", m_deviceId);
    EXPECT_FALSE(info.GetInfoImpl().IsModified());
    for (const char* name : {"PortID", "DeviceID", "FullName", "DeviceClass", "FriendlyName"})
        EXPECT_FALSE(info.GetInfoImpl().IsAccessed(name)) << name;
}

TEST_F(TlDeviceInfo, WarnsOfAnIdentifierThatIsNone) {
    const CVantoCLSerTlDeviceInfoImpl info("port#1", "nonsense");
    const auto messages = m_log.GetMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].level, kWarning);
    EXPECT_EQ(messages[0].format, "Could not parse DeviceID '%s' for PortID '%s'.");
    EXPECT_EQ(messages[0].text, "Could not parse DeviceID 'nonsense' for PortID 'port#1'.");
}

TEST_F(TlDeviceInfo, IsCompleteForAnIdentifierThatIsNone) {
    const CVantoCLSerTlDeviceInfoImpl info("port#1", "nonsense");
    StringList_t names;
    EXPECT_EQ(info.GetPropertyNames(names), 10);
    EXPECT_EQ(info.GetDeviceID(), "nonsense");
    EXPECT_EQ(info.GetFullName(), "port#1|#####");
    EXPECT_EQ(info.GetFriendlyName(), " ");
}

TEST_F(TlDeviceInfo, TakesAnIdentifierOfAnyBytes) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    const std::string identifiers[] = {bytes, "%s%n%d#%s#%n", std::string(100000, '#'), "", "a#b#\xff\xfe#d#e#f"};
    for (const std::string& identifier : identifiers) {
        const CVantoCLSerTlDeviceInfoImpl info("port#1", identifier);
        EXPECT_EQ(info.GetDeviceID().str(), identifier);
        EXPECT_EQ(CountWarnings(), CLProtocol::CDeviceID().FromString(identifier) ? 0u : 1u);
        m_log.Clear();
    }
}

}  // namespace
}  // namespace Vanto
