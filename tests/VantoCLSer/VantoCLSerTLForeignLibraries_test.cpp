/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Tests of serial and driver libraries that are broken: the other ports are found all the same
 */

#include <algorithm>
#include <cstring>
#include <future>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "CLProtocol/Diagnostics.h"
#include "VantoCLSer/VantoCLSerTL.h"
#include "os/Path.h"
#include "tests/VantoCLSer/Fixture.h"

namespace Vanto {
namespace {

using namespace clser_test;
using scripted::PortScript;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kPortList[] = {os::kPathListSeparator, '\0'};

// Bad things happen on Port0; the camera on Port1 must be found.
class ForeignLibraries : public PluginTest {
protected:
    ForeignLibraries() {
        scripted::Serial().SetPorts(2, {"Marlow#Heron#H2048#1", kCamera});
        WriteConfiguration(PortElement("Scripted#Port0") + PortElement("Scripted#Port1"));
    }
    // Those that hung were released, and should not go on while the process ends.
    ~ForeignLibraries() override {
        while (CLProtocol::CountStuckThreads() != 0)
            std::this_thread::yield();
        CLProtocol::SetPatience({});
    }

    std::vector<std::string> SerialNumbers() {
        DeviceInfoList list;
        m_tl.EnumerateDevices(list);
        std::vector<std::string> numbers;
        for (const CDeviceInfo& info : list)
            numbers.push_back(info.GetSerialNumber().str());
        return numbers;
    }

    // What a port does when the driver asks which camera is there.
    template <class Misbehaviour>
    static void MisbehaveOnPort0(const Misbehaviour& misbehave) {
        scripted::Serial().onWrite = [misbehave](PortScript& port, char* buffer, std::uint32_t* size, std::uint32_t) {
            if (port.name == "Port0")
                return static_cast<std::int32_t>(misbehave(port, size));
            std::string answer = port.camera;
            answer.resize(128);
            const std::lock_guard lock(scripted::Serial().mutex);
            if (*size > 0 && *buffer == '?')
                port.input += answer;
            return 0;
        };
    }

    // What the driver does when it is asked for the camera on that port.
    template <class Misbehaviour>
    static void HaveDriverMisbehaveOnPort0(const Misbehaviour& misbehave) {
        scripted::Driver().onProbe = [misbehave](CLProtocol::ISerial* line, const char*, char* deviceId,
                                                 std::uint32_t* size, std::uint32_t* cookie, std::uint32_t timeout) {
            char answer[129] = "?";
            std::uint32_t count = 1;
            line->clSerialWrite(answer, &count, timeout);
            count = 128;
            line->clSerialRead(answer, &count, timeout);
            if (std::string_view(answer) != kCamera)
                return static_cast<std::int32_t>(misbehave());
            std::copy_n(answer, std::min<std::size_t>(sizeof kCamera, *size), deviceId);
            *size = sizeof kCamera;
            *cookie = 1;
            return 0;
        };
    }

    CVantoCLSerTl m_tl;
};

TEST_F(ForeignLibraries, AreFoundWhenTheyAreSound) {
    EXPECT_THAT(SerialNumbers(), ElementsAre("1", "1234"));
}

TEST_F(ForeignLibraries, MayFailOnOnePort) {
    MisbehaveOnPort0([](PortScript&, std::uint32_t*) { return -10001; });
    EXPECT_THAT(SerialNumbers(), ElementsAre("1234"));
    EXPECT_EQ(CountFormat("Error accessing port '%s'. Retrying!"), 1u);
}

TEST_F(ForeignLibraries, MayThrowOnOnePort) {
    MisbehaveOnPort0([](PortScript&, std::uint32_t*) -> int { throw std::runtime_error("of the library"); });
    EXPECT_THAT(SerialNumbers(), ElementsAre("1234"));
}

TEST_F(ForeignLibraries, MayThrowAnything) {
    MisbehaveOnPort0([](PortScript&, std::uint32_t*) -> int { throw 1; });
    EXPECT_THAT(SerialNumbers(), ElementsAre("1234"));
}

TEST_F(ForeignLibraries, MayAnswerNonsenseLengths) {
    MisbehaveOnPort0([](PortScript&, std::uint32_t* size) {
        *size = 0xffffffff;
        return 0;
    });
    EXPECT_THAT(SerialNumbers(), Contains("1234"));
}

TEST_F(ForeignLibraries, MaySayNothing) {
    MisbehaveOnPort0([](PortScript&, std::uint32_t*) { return 0; });
    EXPECT_THAT(SerialNumbers(), ElementsAre("1234"));
    EXPECT_EQ(CountFormat("Seems there is no device connected to port '%s'. Skipping further probes."), 1u);
}

TEST_F(ForeignLibraries, MayAnswerGarbage) {
    MisbehaveOnPort0([](PortScript& port, std::uint32_t*) {
        const std::lock_guard lock(scripted::Serial().mutex);
        for (int byte = 0; byte < 1000; ++byte)
            port.input += static_cast<char>(byte * 37 + 1);
        return 0;
    });
    EXPECT_THAT(SerialNumbers(), Contains("1234"));
}

TEST_F(ForeignLibraries, MayHang) {
    CLProtocol::SetPatience({.callMs = 1000});
    std::promise<void> release;
    MisbehaveOnPort0([released = release.get_future().share()](PortScript&, std::uint32_t*) {
        released.wait();
        return -10004;
    });
    EXPECT_THAT(SerialNumbers(), ElementsAre("1234"));
    EXPECT_THAT(SerialNumbers(), ElementsAre("1234"));
    release.set_value();
    CLProtocol::SetPatience({});
    // The library's function comes back some time, and with it the port.
    MisbehaveOnPort0([](PortScript& port, std::uint32_t*) {
        std::string answer = port.camera;
        answer.resize(128);
        const std::lock_guard lock(scripted::Serial().mutex);
        port.input += answer;
        return 0;
    });
    std::vector<std::string> numbers;
    for (int round = 0; round < 100 && numbers.size() != 2; ++round)
        numbers = SerialNumbers();
    EXPECT_THAT(numbers, ElementsAre("1", "1234"));
}

TEST_F(ForeignLibraries, MayThrowFromADriver) {
    HaveDriverMisbehaveOnPort0([]() -> int { throw std::runtime_error("of the driver"); });
    EXPECT_THAT(SerialNumbers(), ElementsAre("1234"));
}

TEST_F(ForeignLibraries, MayHangInADriver) {
    CLProtocol::SetPatience({.callMs = 1000});
    std::promise<void> release;
    HaveDriverMisbehaveOnPort0([released = release.get_future().share()] {
        released.wait();
        return -10004;
    });
    EXPECT_THAT(SerialNumbers(), ElementsAre("1234"));
    EXPECT_EQ(CountFormat("Seems there is no device connected to port '%s'. Skipping further probes."), 1u);
    EXPECT_EQ(CLProtocol::CountStuckThreads(), 1u);
    release.set_value();
}

TEST_F(ForeignLibraries, MayReturnAnyBytesAsDeviceId) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    for (const std::string& deviceId :
         {bytes, std::string("%s%n#%d"), std::string("Marlow"), std::string("Marlow#########"), std::string(60000, 'x'),
          std::string("\x80\xff#\xfe#\xfd#\xfc"), std::string("Marlow#<&>#\"'#]]>")}) {
        scripted::Driver().asksLine = false;
        scripted::Driver().deviceId = "Marlow#Heron#H2048#1";
        scripted::Driver().onProbe = [deviceId](CLProtocol::ISerial*, const char*, char* text, std::uint32_t* size,
                                                std::uint32_t* cookie, std::uint32_t) {
            *cookie = 0;
            const std::uint32_t capacity = *size;
            *size = static_cast<std::uint32_t>(deviceId.size() + 1);
            if (capacity < *size)
                return -10001;
            std::memcpy(text, deviceId.c_str(), *size);
            return 0;
        };
        DeviceInfoList list;
        EXPECT_NO_THROW(m_tl.EnumerateDevices(list));
        for (const CDeviceInfo& info : list)
            EXPECT_EQ(info.GetDeviceClass(), "MarlowCameraLink");
    }
    scripted::Driver().Reset();
    EXPECT_THAT(SerialNumbers(), ElementsAre("1", "1234"));
}

TEST_F(ForeignLibraries, MayClaimNonsenseSizes) {
    scripted::Driver().onProbe = [](CLProtocol::ISerial*, const char*, char*, std::uint32_t* size,
                                    std::uint32_t* cookie, std::uint32_t) {
        *size = 0xffffffff;
        *cookie = 1;
        return 0;
    };
    EXPECT_NO_THROW(SerialNumbers());
    scripted::Driver().onProbe = nullptr;
    EXPECT_THAT(SerialNumbers(), ElementsAre("1", "1234"));
}

TEST_F(ForeignLibraries, MayHaveNonsensePorts) {
    const std::vector<std::pair<const char*, std::function<void()>>> cases = {
        {"too many",
         [] {
             scripted::Serial().onGetNumSerialPorts = [](std::uint32_t* count) {
                 *count = 0xffffffff;
                 return 0;
             };
         }},
        {"throws", [] { scripted::Serial().onGetNumSerialPorts = [](std::uint32_t*) -> std::int32_t { throw 1; }; }},
        {"long names",
         [] {
             scripted::Serial().onGetSerialPortIdentifier = [](std::uint32_t, char*, std::uint32_t* size) {
                 *size = 0xffffffff;
                 return 0;
             };
         }},
        {"no names", [] { scripted::Serial().onGetSerialPortIdentifier = [](auto...) { return -10001; }; }},
        {"no maker", [] { scripted::Serial().onGetManufacturerInfo = [](auto...) -> std::int32_t { throw 1; }; }},
    };
    for (const auto& [name, misbehave] : cases) {
        misbehave();
        EXPECT_NO_THROW(SerialNumbers()) << name;
        scripted::Serial().onGetNumSerialPorts = nullptr;
        scripted::Serial().onGetSerialPortIdentifier = nullptr;
        scripted::Serial().onGetManufacturerInfo = nullptr;
    }
    EXPECT_THAT(SerialNumbers(), ElementsAre("1", "1234"));
}

TEST_F(ForeignLibraries, MayHaveNonsenseTemplates) {
    for (const std::string& templates : {std::string(), std::string("\t\t\t"), std::string("####\t#\tMarlow##"),
                                         std::string(50000, 'x'), std::string("%s%n\tMarlow")}) {
        scripted::Driver().templates = templates;
        EXPECT_NO_THROW(SerialNumbers()) << templates.substr(0, 20);
    }
    scripted::Driver().onGetTemplates = [](auto...) -> std::int32_t { throw std::runtime_error("of the driver"); };
    EXPECT_THAT(SerialNumbers(), IsEmpty());
}

TEST_F(ForeignLibraries, ThatLackFunctionsAreLeftOut) {
    const scripted::ScopedVariable serial("CLSERIALPATH", scripted::LackingSerialFolder() + kPortList +
                                                              scripted::UnreadableSerialFolder() + kPortList +
                                                              scripted::SerialFolder());
    const scripted::ScopedVariable drivers("GENICAM_CLPROTOCOL",
                                           scripted::LackingDriverLocation() + kPortList + scripted::DriverLocation());
    EXPECT_THAT(SerialNumbers(), ElementsAre("1", "1234"));
}

TEST_F(ForeignLibraries, ThatAreNoneAreLeftOut) {
    m_folder.Write(scripted::LibraryName("clserbad"), "no library");
    m_folder.Write(scripted::SystemFolder() + "/" + scripted::DriverName("Bad"), "no library");
    const scripted::ScopedVariable serial("CLSERIALPATH", m_folder.Path() + kPortList + scripted::SerialFolder());
    const scripted::ScopedVariable drivers("GENICAM_CLPROTOCOL",
                                           m_folder.Path() + kPortList + scripted::DriverLocation());
    EXPECT_THAT(SerialNumbers(), ElementsAre("1", "1234"));
}

TEST_F(ForeignLibraries, ThatAreMissingLeaveNothing) {
    const scripted::ScopedVariable drivers("GENICAM_CLPROTOCOL", m_folder.Path());
    EXPECT_THAT(SerialNumbers(), IsEmpty());
    EXPECT_EQ(LoggedIn(kTl).back(), (Logged{kDebug, "No usable usable DeviceIDTemplates found!", {}}));
}

}  // namespace
}  // namespace Vanto
