/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: the scripted serial library and the scripted driver, and the environment in which a host finds them
 *
 * Link scripted_support and write, for example:
 *
 *     class MyTest : public testing::Test {
 *         scripted::Environment m_environment;   // CLSERIALPATH, GENICAM_CLPROTOCOL, GENICAM_CACHE for this test
 *     };
 *     TEST_F(MyTest, FindsTheCamera) {
 *         scripted::Serial().SetPorts(2, {"Marlow#Heron#H2048#1"});     // PortIDs Scripted#Port0, Scripted#Port1
 *         EXPECT_EQ(CLProtocol::CCLPort::ProbeDevice("Scripted#Port0", scripted::FullDeviceId("Marlow"), 400),
 *                   scripted::FullDeviceId("Marlow#Heron#H2048#1"));
 *         scripted::Serial().SetCamera(0, "");                          // pulls the cable: -10004
 *         scripted::Driver().onRead = [](auto...) { return -30001; };   // or throws, hangs, answers nonsense
 *     }
 *
 * The scripts live in the libraries themselves, of which a process has one instance each: what a test sets is what the
 * host meets, in the same process. Environment resets both scripts when it is made and when it goes.
 */
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "../../../ScopedVariable.h"
#include "../../../TemporaryFolder.h"
#include "scripted/DriverScript.h"
#include "scripted/SerialScript.h"

namespace scripted {

/// Folders of the libraries, without a separator at the end.
std::string SerialFolder();            ///< clserscr: maker "Scripted"
std::string SecondSerialFolder();      ///< clsertwn: a second such library, with a script of its own
std::string OldSerialFolder();         ///< clserold: has only the four functions of version 1.0
std::string LackingSerialFolder();     ///< clserlck: lacks clSetBaudRate
std::string UnreadableSerialFolder();  ///< clserunr: lacks clSerialRead
std::string MakerSerialFolder();      ///< clsermkr: its clGetErrorText has four parameters, the maker before the others
std::string HangingSerialPath();      ///< clserhng: see HangingLibrary
std::string DriverLocation();         ///< a location as in GENICAM_CLPROTOCOL; the driver is in its system's sub-folder
std::string LackingDriverLocation();  ///< its driver lacks clpReadRegister
std::string TwinDriverLocation();     ///< Twin, Twin.debug and Lonely.debug
std::string SystemFolder();           ///< "Linux64_x64" or "Win64_x64"
std::string DriverFileName();
std::string LibraryName(const std::string& stem);  ///< file name of a library: "clserabc" is "clserabc.so" or .dll
std::string DriverName(const std::string& stem);   ///< file name of a driver: "Other" is "libOther.so" or "Other.dll"
std::string DriverPath();
std::string SerialPath();

/// The scripts of the libraries above. The first call loads the library, which stays loaded.
SerialScript& Serial();
SerialScript& SecondSerial();
SerialScript& OldSerial();
SerialScript& MakerSerial();
DriverScript& Driver();
SerialScript& SerialScriptOf(const std::string& libraryPath);
DriverScript& DriverScriptOf(const std::string& libraryPath);

/// DriverDirectory#DriverFileName# in front of a short DeviceID or template of the scripted driver.
std::string FullDeviceId(const std::string& shortDeviceId);

using test_support::ScopedVariable;
using test_support::TemporaryFolder;

/// Everything of ours finds its ttys, port configuration and cache in new folders, and no drivers, serial libraries or
/// roots but its own, as long as this lives.
struct Surroundings {
    TemporaryFolder configuration;
    TemporaryFolder links;  ///< to ttys
    TemporaryFolder cache;  ///< of descriptions
    const ScopedVariable ttys{"CLSERTTY_PATH", links.Path()};
    const ScopedVariable bindings{"VANTO_CL_BINDINGS", configuration.Path()};
    const ScopedVariable cacheFolder{"GENICAM_CACHE", cache.Path()};
    const ScopedVariable serialLibraries{"CLSERIALPATH"};
    const ScopedVariable drivers{"GENICAM_CLPROTOCOL"};
    const ScopedVariable root{"VANTO_ROOT"};
    const ScopedVariable use{"VANTO_USE_TL"};

    static constexpr char kPorts[] = "PortConfiguration_x64.xml";
    /// The elements Port of the port configuration.
    void WritePorts(const std::string& ports) const {
        configuration.Write(kPorts, "<CLBindings>" + ports + "</CLBindings>");
    }
};

/// A serial library that hangs in its constructor. Meanwhile the system neither loads any other library nor looks any
/// function up, so whoever does that hangs as well.
class HangingLibrary {
public:
    HangingLibrary();
    ~HangingLibrary();  ///< waits until the constructor has ended, if it has begun
    HangingLibrary(const HangingLibrary&) = delete;
    HangingLibrary& operator=(const HangingLibrary&) = delete;

    /// The folder of a copy that nobody has loaded yet.
    const std::string& Folder() const { return m_folder.Path(); }
    void Release() const;

private:
    TemporaryFolder m_folder;
    ScopedVariable m_variable;
};

/// Lets a host find the scripted libraries, and no other driver, and keeps its cache in a folder of its own.
class Environment {
public:
    Environment();
    ~Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    const TemporaryFolder& Cache() const { return m_cache; }

private:
    TemporaryFolder m_cache;
    ScopedVariable m_serialPath;
    ScopedVariable m_drivers;
    ScopedVariable m_cacheFolder;
};

}  // namespace scripted
