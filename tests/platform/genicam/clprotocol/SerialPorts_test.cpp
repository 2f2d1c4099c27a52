/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of finding serial libraries and their ports
 */

#include "SerialPorts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <future>
#include <mutex>

#include "CLProtocol/CLPort.h"
#include "os/Path.h"
#include "scripted/Scripted.h"

namespace {

using CLProtocol::CCLPort;
using CLProtocol::LibraryReport;
using scripted::LibraryName;
using Texts = std::vector<std::string>;

// PortIDs of the libraries whose maker begins with "Scripted", or with another name.
Texts PortIds(const std::string& maker = "Scripted") {
    GenICam::gcstring_vector ids;
    CCLPort::GetPortIDs(ids);
    Texts result;
    for (const GenICam::gcstring& id : ids)
        if (id.str().starts_with(maker))
            result.push_back(id.str());
    return result;
}

LibraryReport ReportOf(const std::string& pathPart) {
    for (const LibraryReport& report : CLProtocol::GetSerialLibraries())
        if (report.path.str().find(pathPart) != std::string::npos)
            return report;
    ADD_FAILURE() << "no report for " << pathPart;
    return {};
}

class Ports : public testing::Test {
public:
    ~Ports() override {
        scripted::SecondSerial().Reset();
        CLProtocol::SetPatience({});
    }

protected:
    scripted::Environment environment;
    scripted::SerialScript& script = scripted::Serial();
};

TEST_F(Ports, AreNamedByMakerAndName) {
    script.SetPorts(2);
    EXPECT_EQ(PortIds(), (Texts{"Scripted#Port0", "Scripted#Port1"}));
    script.SetPorts(1);
    EXPECT_EQ(PortIds(), (Texts{"Scripted#Port0"}));
    script.SetPorts(0);
    EXPECT_TRUE(PortIds().empty());
}

TEST_F(Ports, OfSeveralFoldersAreFoundOnce) {
    const std::string first = scripted::SerialFolder();
    const std::string second = scripted::SecondSerialFolder();
    const scripted::ScopedVariable path("CLSERIALPATH", first + os::kPathListSeparator + "/none" +
                                                            os::kPathListSeparator + second + "/" +
                                                            os::kPathListSeparator + first);
    scripted::SecondSerial().maker = "Scripted Two";
    EXPECT_EQ(PortIds(), (Texts{"Scripted#Port0", "Scripted Two#Port0"}));
}

TEST_F(Ports, MayBeOfLibrariesInAnyCase) {
    const scripted::TemporaryFolder folder;
    for (const std::string name : {"clSerAbc", "CLSERDEF", "libClSerGhI"})
        std::filesystem::copy_file(scripted::SerialPath(), folder / scripted::LibraryName(name));
    folder.Write(scripted::LibraryName("CLSERAB"), "one letter short");
    const scripted::ScopedVariable path("CLSERIALPATH", folder.Path());
    Texts names;
    for (const LibraryReport& report : CLProtocol::GetSerialLibraries())
        if (report.maker == "Scripted")
            names.push_back(os::FileNameOf(report.path.str()));
    EXPECT_EQ(names, (Texts{scripted::LibraryName("CLSERDEF"), scripted::LibraryName("clSerAbc"),
                            scripted::LibraryName("libClSerGhI")}));
}

TEST_F(Ports, WithEqualNamesStayApart) {
    const scripted::ScopedVariable path(
        "CLSERIALPATH", scripted::SerialFolder() + os::kPathListSeparator + scripted::SecondSerialFolder());
    script.SetPorts(2);
    script.ports[1].name = "Port0";
    EXPECT_EQ(PortIds(), (Texts{"Scripted#Port0", "Scripted#Port0 (2)", "Scripted#Port0 (3)"}));
    script.SetPorts(2, {"", "Marlow#Heron#H2048#2"});
    script.ports[1].name = "Port0";
    PortIds();
    EXPECT_EQ(CCLPort::ProbeDevice("Scripted#Port0 (2)", scripted::FullDeviceId("Marlow"), 100),
              scripted::FullDeviceId("Marlow#Heron#H2048#2"));
}

TEST_F(Ports, WithoutANameAreLeftOut) {
    script.SetPorts(3);
    script.ports[1].name = "";
    EXPECT_EQ(PortIds(), (Texts{"Scripted#Port0", "Scripted#Port2"}));
    script.onGetSerialPortIdentifier = [](std::uint32_t, char*, std::uint32_t*) { return -10005; };
    EXPECT_TRUE(PortIds().empty());
}

TEST_F(Ports, MayHaveNamesOfAnyBytes) {
    script.ports[0].name = "a#b\t\n\xff%s " + std::string(1000, 'x');
    ASSERT_EQ(PortIds().size(), 1u);
    EXPECT_EQ(PortIds()[0], "Scripted#a#b  \xff%s " + std::string(1000, 'x'));
    CCLPort port;
    EXPECT_THROW(port.Connect(PortIds()[0], scripted::FullDeviceId("Marlow")), CLProtocol::CLErrException);
    EXPECT_EQ(script.Port(0).opened, 1);
}

TEST_F(Ports, AreFoundUnderTheirNameWhenNumbersChange) {
    script.SetPorts(2, {"", "Marlow#Heron#H2048#2"});
    PortIds();
    script.SetPorts(1, {"Marlow#Heron#H2048#2"});
    script.ports[0].name = "Port1";
    EXPECT_EQ(CCLPort::ProbeDevice("Scripted#Port1", scripted::FullDeviceId("Marlow"), 100),
              scripted::FullDeviceId("Marlow#Heron#H2048#2"));
}

TEST_F(Ports, ThatAreUnknownAreAnError) {
    for (const char* id : {"", "#", "none", "Scripted#Port7", "Scripted"}) {
        try {
            CCLPort::ProbeDevice(id, scripted::FullDeviceId("Marlow"), 100);
            FAIL() << id;
        } catch (const CLProtocol::CLErrException& error) {
            EXPECT_EQ(error.GetErrorCode(), -10002);
            EXPECT_EQ(std::string(error.GetDescription()), "There is no port '" + std::string(id) + "' (-10002)");
        }
    }
}

TEST_F(Ports, OfALibraryThatReportsNonsenseAreBounded) {
    script.onGetNumSerialPorts = [](std::uint32_t* count) {
        *count = 0xffffffff;
        return 0;
    };
    EXPECT_EQ(PortIds().size(), 1u);
    script.onGetSerialPortIdentifier = [](std::uint32_t, char* id, std::uint32_t* size) {
        std::memset(id, 'x', *size);
        *size = 0xffffffff;
        return 0;
    };
    EXPECT_EQ(PortIds().size(), 256u);
}

TEST_F(Ports, OfALibraryThatFailsDoNotHideOthers) {
    const scripted::ScopedVariable path(
        "CLSERIALPATH", scripted::SerialFolder() + os::kPathListSeparator + scripted::SecondSerialFolder());
    scripted::SecondSerial().maker = "Second";
    script.onGetNumSerialPorts = [](std::uint32_t*) { return -10006; };
    EXPECT_TRUE(PortIds().empty());
    EXPECT_EQ(PortIds("Second"), (Texts{"Second#Port0"}));
    EXPECT_EQ(ReportOf("clserscr").refusal,
              "Function 'clGetNumSerialPorts' of '" + scripted::SerialPath() + "' failed: invalid reference (-10006)");
    script.onGetNumSerialPorts = [](std::uint32_t*) -> std::int32_t { throw std::runtime_error("reason"); };
    EXPECT_EQ(PortIds("Second"), (Texts{"Second#Port0"}));
    EXPECT_EQ(ReportOf("clserscr").refusal,
              "Function 'clGetNumSerialPorts' of '" + scripted::SerialPath() + "' threw an exception: reason");
}

TEST_F(Ports, OfALibraryThatHangsDoNotHideOthers) {
    const scripted::ScopedVariable path(
        "CLSERIALPATH", scripted::SerialFolder() + os::kPathListSeparator + scripted::SecondSerialFolder());
    scripted::SecondSerial().maker = "Second";
    const auto latch = std::make_shared<std::promise<void>>();
    PortIds();
    CLProtocol::SetPatience({50, 1000});
    script.onGetNumSerialPorts = [opened = latch->get_future().share()](std::uint32_t*) {
        opened.wait();
        return -10006;
    };
    EXPECT_TRUE(PortIds().empty());
    EXPECT_EQ(PortIds("Second"), (Texts{"Second#Port0"}));
    EXPECT_EQ(ReportOf("clserscr").refusal, "a function of it does not return");
    {
        const std::lock_guard lock(script.mutex);  // its last use has not returned yet
        script.onGetNumSerialPorts = nullptr;
    }
    latch->set_value();
    // It recovers when its function returns after all.
    while (PortIds().empty())
        std::this_thread::yield();
    EXPECT_EQ(PortIds(), (Texts{"Scripted#Port0"}));
}

TEST_F(Ports, OfVersion1_0AreCountedByOpening) {
    const scripted::ScopedVariable path("CLSERIALPATH", scripted::OldSerialFolder());
    scripted::SerialScript& old = scripted::OldSerial();
    old.SetPorts(2, {"", "Marlow#Heron#H2048#2"});
    old.ports[0].isOpen = true;  // another program's
    EXPECT_EQ(PortIds("clserold"), (Texts{"clserold#Port0", "clserold#Port1"}));
    EXPECT_EQ(ReportOf("clserold").version, "1.0");
    EXPECT_EQ(CCLPort::ProbeDevice("clserold#Port1", scripted::FullDeviceId("Marlow"), 100),
              scripted::FullDeviceId("Marlow#Heron#H2048#2"));
    EXPECT_FALSE(old.Port(1).isOpen);
}

TEST_F(Ports, WarnOfAListOfFoldersThatIsTooLong) {
    const scripted::ScopedVariable path("CLSERIALPATH", std::string(40000, 'x'));
    std::vector<std::string> messages;
    CLProtocol::SetLogSink([&](int, const char*, const char* message) { messages.emplace_back(message); });
    PortIds();
    CLProtocol::SetLogSink({});
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(messages.front(), "Environment variable 'CLSERIALPATH' is too long and ignored");
}

struct ModuleFiles : Ports {
    // A copy of the scripted library under a name of its own: a library that is not loaded yet.
    std::string Copy(const std::string& name, const std::string& from = scripted::SerialPath()) {
        std::filesystem::copy_file(from, folder / name);
        return folder / name;
    }

    scripted::TemporaryFolder folder;
    scripted::ScopedVariable path{"CLSERIALPATH", folder.Path()};
};

TEST_F(ModuleFiles, OfVersion1_0AreCountedWhereOpeningHasARemark) {
    const std::string suffix = std::filesystem::path(scripted::SerialPath()).extension().string();
    const std::string copy = Copy("clserrem" + suffix, scripted::OldSerialFolder() + "/clserold" + suffix);
    scripted::SerialScriptOf(copy).onInit = [](std::uint32_t index, hSerRef*) { return index < 3 ? 7 : -10005; };
    EXPECT_EQ(PortIds("clserrem").size(), 3u);
}

TEST_F(ModuleFiles, AreThoseWithTheRightNames) {
    const std::string suffix = std::filesystem::path(scripted::SerialPath()).extension().string();
    for (const char* name : {"clser", "clserab", "clserabcd", "xclserabc", "clserabc.old", "clser.so"})
        folder.Write(name + suffix, "no library");
    folder.Write("clserabc", "no library");
    folder.Write("clserdir" + suffix + "/file", "");
    Copy("clserone" + suffix);
    Copy("libclsertwo" + suffix);
    Texts found;
    for (const LibraryReport& report : CLProtocol::GetSerialLibraries())
        if (report.path.str().starts_with(folder.Path()))
            found.push_back(os::FileNameOf(report.path.str()));
    EXPECT_EQ(found, (Texts{"clserone" + suffix, "libclsertwo" + suffix}));
}

TEST_F(ModuleFiles, ThatAreNoLibrariesAreRefusedWithTheirPath) {
    folder.Write(LibraryName("clserbad"), "no library");
    const LibraryReport report = ReportOf(LibraryName("clserbad"));
    EXPECT_NE(report.refusal.str().find(folder / LibraryName("clserbad")), std::string::npos) << report.refusal;
    EXPECT_EQ(report.version, "");
}

TEST_F(ModuleFiles, ThatLackAFunctionAreRefusedWithItsName) {
    const scripted::ScopedVariable both(
        "CLSERIALPATH", scripted::LackingSerialFolder() + os::kPathListSeparator + scripted::UnreadableSerialFolder());
    EXPECT_NE(ReportOf("clserlck").refusal.str().find("has no function 'clSetBaudRate'"), std::string::npos);
    EXPECT_NE(ReportOf("clserunr").refusal.str().find("has no function 'clSerialRead'"), std::string::npos);
    EXPECT_NE(ReportOf("clserunr").refusal.str().find(scripted::UnreadableSerialFolder()), std::string::npos);
}

TEST_F(ModuleFiles, OfUnknownVersionsAreRefused) {
    const std::uint32_t versions[] = {0, 1, 6, 0xffffffff};
    for (int i = 0; i < 4; ++i) {
        const std::string name = LibraryName("clserv0" + std::to_string(i));
        scripted::SerialScriptOf(Copy(name)).version = versions[i];
        EXPECT_EQ(ReportOf(name).refusal,
                  "'" + folder / name +
                      "' is no Camera Link library of version 1.0 to 2.1: it reports version number " +
                      std::to_string(versions[i]));
    }
}

TEST_F(ModuleFiles, OfVersions1_1To2_1AreUsed) {
    const char* const names[] = {"1.1", "2.0", "2.1"};
    for (std::uint32_t i = 0; i < 3; ++i) {
        const std::string name = LibraryName("clserg0" + std::to_string(i));
        scripted::SerialScriptOf(Copy(name)).version = CL_DLL_VERSION_1_1 + i;
        const LibraryReport report = ReportOf(name);
        EXPECT_EQ(report.refusal, "");
        EXPECT_EQ(report.version, names[i]);
        EXPECT_EQ(report.maker, "Scripted");
        ASSERT_EQ(report.offers.size(), 1u);
        EXPECT_EQ(report.offers[0], "Port0");
    }
}

TEST_F(ModuleFiles, ThatAreReplacedAreTriedAgain) {
    folder.Write(LibraryName("clserrep"), "no library");
    EXPECT_NE(ReportOf(LibraryName("clserrep")).refusal, "");
    std::filesystem::remove(folder / LibraryName("clserrep"));
    Copy(LibraryName("clserrep"));
    EXPECT_EQ(ReportOf(LibraryName("clserrep")).refusal, "");
}

TEST_F(ModuleFiles, WhoseMakersNameGrowsAreRefused) {
    scripted::SerialScript& growing = scripted::SerialScriptOf(Copy(LibraryName("clsergrw")));
    growing.onGetManufacturerInfo = [](char*, std::uint32_t* size, std::uint32_t* version) {
        *version = CL_DLL_VERSION_2_1;
        *size = *size * 2;
        return -10001;
    };
    EXPECT_EQ(ReportOf("clsergrw").refusal, "Function 'clGetManufacturerInfo' of '" + folder / LibraryName("clsergrw") +
                                                "' failed: buffer too small (-10001)");
}

}  // namespace
