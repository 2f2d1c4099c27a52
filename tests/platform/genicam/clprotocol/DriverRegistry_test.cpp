/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of finding drivers and of what they may answer
 */

#include "DriverRegistry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <future>
#include <mutex>

#include "CLProtocol/CLPort.h"
#include "CLProtocol/Log.h"
#include "os/Path.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::CCLPort;
using CLProtocol::LibraryReport;
using scripted::DriverName;
using Texts = std::vector<std::string>;

Texts Templates() {
    GenICam::gcstring_vector templates;
    CCLPort::GetDeviceIDTemplates(templates);
    Texts result;
    for (const GenICam::gcstring& text : templates)
        result.push_back(text.str());
    return result;
}

LibraryReport ReportOf(const std::string& pathPart) {
    for (const LibraryReport& report : CLProtocol::GetDrivers())
        if (report.path.str().find(pathPart) != std::string::npos)
            return report;
    ADD_FAILURE() << "no report for " << pathPart;
    return {};
}

class Drivers : public testing::Test {
public:
    ~Drivers() override { CLProtocol::SetPatience({}); }

protected:
    // A copy of the scripted driver: one that is not loaded yet. The script is the copy's own.
    scripted::DriverScript& Copy(const std::string& name) {
        const std::string target = folder / (scripted::SystemFolder() + os::kPathSeparator + name);
        std::filesystem::create_directories(os::FolderOf(target));
        std::filesystem::copy_file(scripted::DriverPath(), target);
        return scripted::DriverScriptOf(target);
    }

    scripted::Environment environment;
    scripted::DriverScript& script = scripted::Driver();
    scripted::TemporaryFolder folder;
};

TEST_F(Drivers, OfferTemplatesInTheirFullForm) {
    EXPECT_EQ(Templates(), (Texts{scripted::FullDeviceId("Marlow")}));
    script.templates = "Marlow#Heron\t\tMarlow#Egret\tOther\t";
    EXPECT_EQ(Templates(), (Texts{scripted::FullDeviceId("Marlow#Heron"), scripted::FullDeviceId("Marlow#Egret"),
                                  scripted::FullDeviceId("Other")}));
}

TEST_F(Drivers, MayNameThemselvesInTheirTemplates) {
    script.templates = "/elsewhere#libOther.so#Marlow#Heron\tEgret";
    EXPECT_EQ(Templates(), (Texts{scripted::FullDeviceId("Marlow#Heron"), scripted::FullDeviceId("Egret")}));
}

TEST_F(Drivers, ThatOfferNonsenseOfferNothing) {
    script.templates = "a#b#c#d#e#f#g#h\tM\nx\tMarlow";
    EXPECT_EQ(Templates(), (Texts{scripted::FullDeviceId("Marlow")}));
    script.onGetTemplates = [](char* text, std::uint32_t* size) {
        std::memset(text, 'x', *size);
        *size = 0x80000000;
        return 0;
    };
    EXPECT_EQ(Templates(), (Texts{scripted::FullDeviceId(std::string(4096, 'x'))}));
    script.onGetTemplates = [](char*, std::uint32_t* size) {
        *size += 5;
        return -10001;
    };
    EXPECT_TRUE(Templates().empty());
}

TEST_F(Drivers, ThatFailDoNotHideOthers) {
    Copy(DriverName("Other")).templates = "Other";
    const scripted::ScopedVariable both("GENICAM_CLPROTOCOL",
                                        scripted::DriverLocation() + os::kPathListSeparator + folder.Path());
    script.onGetTemplates = [](char*, std::uint32_t*) -> std::int32_t { throw std::runtime_error("reason"); };
    EXPECT_EQ(Templates(), (Texts{folder.Path() + "#" + DriverName("Other") + "#Other"}));
    EXPECT_EQ(ReportOf("Scripted").refusal,
              "Function 'clpGetShortDeviceIDTemplates' of '" + scripted::DriverPath() + "' threw an exception: reason");
    script.onGetTemplates = [](char*, std::uint32_t*) { return -30001; };
    EXPECT_EQ(ReportOf("Scripted").refusal, "Function 'clpGetShortDeviceIDTemplates' of '" + scripted::DriverPath() +
                                                "' failed: error of the driver (-30001)");
}

TEST_F(Drivers, ThatHangDoNotHideOthers) {
    Copy(DriverName("Other")).templates = "Other";
    const scripted::ScopedVariable both("GENICAM_CLPROTOCOL",
                                        scripted::DriverLocation() + os::kPathListSeparator + folder.Path());
    Templates();
    CLProtocol::SetPatience({50, 1000});
    const auto latch = std::make_shared<std::promise<void>>();
    script.onGetTemplates = [opened = latch->get_future().share()](char*, std::uint32_t*) {
        opened.wait();
        return -30001;
    };
    EXPECT_EQ(Templates(), (Texts{folder.Path() + "#" + DriverName("Other") + "#Other"}));
    EXPECT_EQ(ReportOf("Scripted").refusal, "a function of it does not return");
    {
        const std::lock_guard lock(script.mutex);  // its last use has not returned yet
        script.onGetTemplates = nullptr;
    }
    latch->set_value();
    while (Templates().size() < 2)
        std::this_thread::yield();
}

TEST_F(Drivers, LieInTheListedLocations) {
    Copy(DriverName("Other")).templates = "Other";
    folder.Write(DriverName("Stray"), "not in the system's folder");
    const scripted::ScopedVariable variable("DRIVER_TEST", folder.Path());
    const scripted::ScopedVariable both("GENICAM_CLPROTOCOL", "/none" + std::string(1, os::kPathListSeparator) +
                                                                  "$(DRIVER_TEST)/" + os::kPathListSeparator +
                                                                  os::kPathListSeparator + "$(DRIVER_TEST)");
    // The location stands in the DeviceID as it is listed, and is replaced where the driver is loaded.
    ASSERT_EQ(Templates(), (Texts{"$(DRIVER_TEST)#" + DriverName("Other") + "#Other"}));
    EXPECT_EQ(CLProtocol::CDeviceID(Templates()[0]).GetDriverPath(),
              folder / (scripted::SystemFolder() + os::kPathSeparator + DriverName("Other")));
}

TEST_F(Drivers, LieInAListedFolderOfTheSystemAsWell) {
    Copy(DriverName("Other")).templates = "Other";
    const std::string inside = folder / scripted::SystemFolder();
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", inside + "/");
    ASSERT_EQ(Templates(), (Texts{inside + "#" + DriverName("Other") + "#Other"}));
    for (const std::string end : {"", "/", "//"})
        EXPECT_EQ(CLProtocol::CDeviceID(inside + end + "#" + DriverName("Other") + "#Other").GetDriverPath(),
                  inside + os::kPathSeparator + DriverName("Other"));
}

TEST_F(Drivers, AreFoundOnceOnWhateverWay) {
    Copy(DriverName("Other")).templates = "Other";
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL",
                                            folder.Path() + os::kPathListSeparator + folder / scripted::SystemFolder());
    EXPECT_EQ(Templates(), (Texts{folder.Path() + "#" + DriverName("Other") + "#Other"}));
    EXPECT_EQ(CLProtocol::GetDrivers().size(), 1u);
}

TEST_F(Drivers, OfLocationsThatCannotBeTokensAreLeftOut) {
    scripted::TemporaryFolder other;
    other.Write("a#b/" + scripted::SystemFolder() + "/" + DriverName("X"), "");
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", other / "a#b");
    EXPECT_TRUE(CLProtocol::GetDrivers().empty());
    EXPECT_TRUE(Templates().empty());
}

TEST_F(Drivers, BesideTheirDebugTwinComeFirst) {
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", scripted::TwinDriverLocation());
    Texts names;
    for (const LibraryReport& report : CLProtocol::GetDrivers()) {
        EXPECT_EQ(report.refusal, "");
        names.push_back(os::FileNameOf(report.path.str()));
    }
    EXPECT_EQ(names, (Texts{DriverName("Lonely.debug"), DriverName("Twin")}));
}

TEST_F(Drivers, HaveTheRightFileNames) {
    for (const std::string& name :
         {DriverName(""), DriverName("Other") + ".1", DriverName("Other") + ".txt", DriverName("#")})
        folder.Write(scripted::SystemFolder() + "/" + name, "");
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", folder.Path());
    EXPECT_TRUE(CLProtocol::GetDrivers().empty());
}

TEST_F(Drivers, MayBeInCapitalsWhereTheCaseDoesNotCount) {
    std::string name = DriverName("Other");
    std::ranges::transform(name, name.begin(),
                           [](unsigned char character) { return static_cast<char>(std::toupper(character)); });
    folder.Write(scripted::SystemFolder() + "/" + name, "");
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", folder.Path());
    EXPECT_EQ(CLProtocol::GetDrivers().size(), os::FoldedFileName("X") == "x" ? 1u : 0u);
}

TEST_F(Drivers, ThatAreNoLibrariesAreRefusedWithTheirPath) {
    const std::string name = scripted::SystemFolder() + "/" + DriverName("Broken");
    folder.Write(name, "no library");
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", folder.Path());
    EXPECT_NE(ReportOf("Broken").refusal.str().find(folder / name), std::string::npos);
    try {
        CCLPort::ProbeDevice("Scripted#Port0", folder.Path() + "#" + DriverName("Broken") + "#Marlow", 100);
        FAIL();
    } catch (const CLProtocol::CLErrException& error) {
        EXPECT_EQ(error.GetErrorCode(), -10098);
        EXPECT_NE(std::string(error.GetDescription()).find(folder / name), std::string::npos);
    }
}

TEST_F(Drivers, ThatLackAFunctionAreRefusedWithItsName) {
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", scripted::LackingDriverLocation());
    EXPECT_TRUE(Templates().empty());
    const std::string refusal = ReportOf("Lacking").refusal.str();
    EXPECT_NE(refusal.find("has no function 'clpReadRegister'"), std::string::npos);
    EXPECT_NE(refusal.find(scripted::LackingDriverLocation()), std::string::npos);
}

TEST_F(Drivers, OfAnotherMajorVersionAreRefused) {
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", folder.Path());
    scripted::DriverScript& driver = Copy(DriverName("New"));
    driver.versionMajor = 2;
    driver.versionMinor = 0;
    EXPECT_EQ(ReportOf("New").refusal, "'" + folder / (scripted::SystemFolder() + "/" + DriverName("New")) +
                                           "' is of CLProtocol version 2.0; 1.1 to 1.2 is needed");
    EXPECT_EQ(driver.CountCalls("clpInitLib"), 0u);
}

TEST_F(Drivers, OfVersion1_0AreRefusedAndOf1_1Used) {
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", folder.Path());
    Copy(DriverName("Oldest")).versionMinor = 0;
    Copy(DriverName("Old")).versionMinor = 1;
    EXPECT_NE(ReportOf("Oldest").refusal, "");
    EXPECT_EQ(ReportOf(DriverName("Old")).refusal, "");
    EXPECT_EQ(ReportOf(DriverName("Old")).version, "1.1");
}

TEST_F(Drivers, ThatCannotInitialiseAreRefused) {
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", folder.Path());
    Copy(DriverName("Init")).onInitLib = [](std::int32_t) { return -30005; };
    Copy(DriverName("Throw")).onGetVersion = [](std::uint32_t*, std::uint32_t*) -> std::int32_t { throw 1; };
    EXPECT_NE(ReportOf("Init").refusal.str().find("'clpInitLib'"), std::string::npos);
    EXPECT_NE(ReportOf("Throw").refusal.str().find("'clpGetCLProtocolVersion'"), std::string::npos);
}

TEST_F(Drivers, AreInitialisedOnceWithALogger) {
    std::vector<std::string> messages;
    CLProtocol::SetLogSink(
        [&](int level, const char* category, const char* message) {
            if (std::string(category) == CLProtocol::kDriverLogCategory)
                messages.push_back(std::to_string(level) + " " + message);
        },
        CLProtocol::CLP_LOG_DEBUG);
    const scripted::ScopedVariable location("GENICAM_CLPROTOCOL", folder.Path());
    scripted::DriverScript& driver = Copy(DriverName("Log"));
    driver.onGetTemplates = [&](char* text, std::uint32_t* size) {
        driver.Log(CLProtocol::CLP_LOG_NOTICE, "%s has %d", "it", 1);
        *size = 1;
        *text = '\0';
        return 0;
    };
    Templates();
    Templates();
    CLProtocol::SetLogSink({});
    EXPECT_EQ(driver.CountCalls("clpInitLib"), 1u);
    EXPECT_EQ(driver.logLevel, CLProtocol::CLP_LOG_DEBUG);
    const std::string path = folder / (scripted::SystemFolder() + "/" + DriverName("Log"));
    EXPECT_EQ(messages, (Texts{"500 " + path + ": it has 1", "500 " + path + ": it has 1"}));
    driver.Reset();
}

TEST_F(Drivers, AreClosedAndUnloadedOnRequestWhenNobodyUsesThem) {
    Templates();
    scripted::Serial().SetPorts(1, {"Marlow#Heron#H2048#1"});
    {
        CCLPort port;
        port.Connect("Scripted#Port0", scripted::FullDeviceId("Marlow"));
        CLProtocol::ReleaseLibraries();
        EXPECT_EQ(script.CountCalls("clpCloseLib"), 0u);
    }
    CLProtocol::ReleaseLibraries();
    CLProtocol::ReleaseLibraries();
    EXPECT_EQ(script.CountCalls("clpCloseLib"), 1u);
    EXPECT_EQ(Templates().size(), 1u);
}

TEST_F(Drivers, AreNotLoadedFromOutsideTheirLocation) {
    for (const std::string& name : {"../" + scripted::DriverFileName(), "/" + DriverName("X"), std::string()})
        try {
            CCLPort::ProbeDevice("Scripted#Port0", scripted::DriverLocation() + "#" + name + "#Marlow", 100);
            FAIL() << name;
        } catch (const CLProtocol::CLErrException& error) {
            EXPECT_EQ(error.GetErrorCode(), -20100);
        }
}

}  // namespace
