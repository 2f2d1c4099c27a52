/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Access to the scripted libraries
 */

#include "scripted/Scripted.h"

#include <filesystem>
#include <map>
#include <mutex>

#include "os/Library.h"
#include "os/Path.h"

namespace scripted {

namespace {

std::string InRoot(const std::string& name) {
    return std::string(SCRIPTED_ROOT) + os::kPathSeparator + name;
}

#ifdef _WIN32
constexpr char kSuffix[] = ".dll";
constexpr char kDriverPrefix[] = "";
#else
constexpr char kSuffix[] = ".so";
constexpr char kDriverPrefix[] = "lib";
#endif

// Loaded once per path and kept, so that a script outlives whatever a host loads and unloads.
void* Control(const std::string& path, const char* function) {
    static std::mutex mutex;
    static std::map<std::string, os::Library> libraries;
    const std::lock_guard lock(mutex);
    const os::Library& library = libraries.try_emplace(path, path).first->second;
    return library.Get<void*()>(function)();
}

}  // namespace

std::string SerialFolder() {
    return InRoot("serial");
}
std::string SecondSerialFolder() {
    return InRoot("serial2");
}
std::string OldSerialFolder() {
    return InRoot("serial10");
}
std::string LackingSerialFolder() {
    return InRoot("serial_lacking");
}
std::string UnreadableSerialFolder() {
    return InRoot("serial_unreadable");
}
std::string MakerSerialFolder() {
    return InRoot("serial_maker");
}
std::string HangingSerialPath() {
    return InRoot("serial_hanging") + os::kPathSeparator + "clserhng" + kSuffix;
}
std::string DriverLocation() {
    return InRoot("drivers");
}
std::string LackingDriverLocation() {
    return InRoot("drivers_lacking");
}
std::string TwinDriverLocation() {
    return InRoot("drivers_twins");
}
std::string SystemFolder() {
    return SCRIPTED_SYSTEM;
}
std::string LibraryName(const std::string& stem) {
    return stem + kSuffix;
}
std::string DriverName(const std::string& stem) {
    return kDriverPrefix + LibraryName(stem);
}
std::string DriverFileName() {
    return DriverName("ScriptedCLProtocol");
}

std::string DriverPath() {
    return DriverLocation() + os::kPathSeparator + SystemFolder() + os::kPathSeparator + DriverFileName();
}

std::string SerialPath() {
    return SerialFolder() + os::kPathSeparator + "clserscr" + kSuffix;
}

SerialScript& Serial() {
    return SerialScriptOf(SerialPath());
}
SerialScript& SecondSerial() {
    return SerialScriptOf(SecondSerialFolder() + os::kPathSeparator + "clsertwn" + kSuffix);
}
SerialScript& OldSerial() {
    return SerialScriptOf(OldSerialFolder() + os::kPathSeparator + "clserold" + kSuffix);
}
SerialScript& MakerSerial() {
    return SerialScriptOf(MakerSerialFolder() + os::kPathSeparator + "clsermkr" + kSuffix);
}
DriverScript& Driver() {
    return DriverScriptOf(DriverPath());
}

SerialScript& SerialScriptOf(const std::string& libraryPath) {
    return *static_cast<SerialScript*>(Control(libraryPath, "scriptedSerial"));
}

DriverScript& DriverScriptOf(const std::string& libraryPath) {
    return *static_cast<DriverScript*>(Control(libraryPath, "scriptedDriver"));
}

std::string FullDeviceId(const std::string& shortDeviceId) {
    return DriverLocation() + "#" + DriverFileName() + "#" + shortDeviceId;
}

HangingLibrary::HangingLibrary() : m_variable("SCRIPTED_HANGS_WHILE_MISSING", m_folder / "go") {
    std::filesystem::copy_file(HangingSerialPath(), m_folder / std::string("clserhng").append(kSuffix));
}

HangingLibrary::~HangingLibrary() {
    Release();
}

/// Ends the hang, and waits until others can be loaded again.
void HangingLibrary::Release() const {
    m_folder.Write("go", "on");
    Serial();
}

Environment::Environment()
    : m_serialPath("CLSERIALPATH", SerialFolder()),
      m_drivers("GENICAM_CLPROTOCOL", DriverLocation()),
      m_cacheFolder("GENICAM_CACHE", m_cache.Path()) {
    Serial().Reset();
    Driver().Reset();
}

Environment::~Environment() {
    Serial().Reset();
    Driver().Reset();
}

}  // namespace scripted
