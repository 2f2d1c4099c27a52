/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of the library as a host links it
 */

#include "CLProtocol/CLPort.h"
#include "CLProtocol/DeviceID.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "CLProtocol/Diagnostics.h"
#include "CLProtocol/Log.h"
#include "os/Path.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::CCLPort;

constexpr char kPort[] = "Scripted#Port0";
constexpr char kCamera[] = "Marlow#Heron#H2048#1";

class Library : public testing::Test {
    scripted::Environment m_environment;
};

TEST_F(Library, GoesFromPortToDescription) {
    scripted::Serial().SetPorts(1, {kCamera});
    GenICam::gcstring_vector ports;
    CCLPort::GetPortIDs(ports);
    ASSERT_NE(std::find(ports.begin(), ports.end(), kPort), ports.end());
    GenICam::gcstring_vector templates;
    CCLPort::GetDeviceIDTemplates(templates);
    ASSERT_EQ(templates.size(), 1u);
    const GenICam::gcstring deviceId = CCLPort::ProbeDevice(kPort, templates[0], 400);
    EXPECT_EQ(deviceId, scripted::FullDeviceId(kCamera));
    CCLPort port;
    port.Connect(kPort, deviceId);
    EXPECT_EQ(port.GetXML(true), "<RegisterDescription/>");
}

TEST_F(Library, ThrowsWhatAHostCanCatch) {
    CCLPort port;
    EXPECT_THROW(port.Connect("none", scripted::FullDeviceId(kCamera)), CLProtocol::CLErrException);
    EXPECT_THROW(port.Connect("none", "x"), GenICam::RuntimeException);
    char byte = 0;
    EXPECT_THROW(port.Read(&byte, 0, 0), GenICam::InvalidArgumentException);
}

TEST_F(Library, LooksBesideItselfForDriversAndSerialLibraries) {
    const scripted::ScopedVariable drivers("GENICAM_CLPROTOCOL");
    GenICam::gcstring_vector locations;
    CLProtocol::GetDriverLocations(locations);
    GenICam::gcstring_vector folders;
    CLProtocol::GetSerialLibraryFolders(folders);
    ASSERT_EQ(locations.size(), 1u);
    ASSERT_EQ(folders.size(), 2u);
    EXPECT_EQ(locations[0], folders[0].str() + os::ToSystemSeparators("/vanto/clprotocol"));
    EXPECT_EQ(folders[1], scripted::SerialFolder());
}

TEST_F(Library, HandsLogMessagesToTheHost) {
    std::vector<std::string> messages;
    CLProtocol::SetLogSink([&](int, const char*, const char* message) { messages.emplace_back(message); });
    scripted::Driver().onGetTemplates = [](char*, std::uint32_t*) { return -30001; };
    GenICam::gcstring_vector templates;
    CCLPort::GetDeviceIDTemplates(templates);
    CLProtocol::SetLogSink({});
    ASSERT_FALSE(messages.empty());
    EXPECT_NE(messages.back().find("-30001"), std::string::npos);
}

}  // namespace
