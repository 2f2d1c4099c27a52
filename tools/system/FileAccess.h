/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What this user may do with a file, and the devices of serial ports
 */
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tools {

/// A file or device as the system sees it for this user.
struct FileAccess {
    bool exists = false;
    bool readable = false;
    bool writable = false;
    std::string owner;
    std::string group;
    bool groupMayWrite = false;
    bool memberOfGroup = false;
    std::string mode;  ///< for example "crw-rw----"
};

FileAccess AccessTo(const std::filesystem::path& path);
/// Why a file can't be read, in the system's words; empty when it can.
std::string WhyNotReadable(const std::filesystem::path& path);
/// What to do so that this user may read and write a device.
std::string AdviceOnAccess(const std::filesystem::path& path, const FileAccess& access);
/// Name of the user that runs this process.
std::string UserName();

/// The devices of serial ports that the machine has, of adapters and built in.
std::vector<std::filesystem::path> SerialDevices();
/// The name of a device in a PortID of the system's own serial ports; empty in those of frame grabbers.
std::string DeviceNameOf(const std::string& portId);
/// The device behind a PortID of the system's own serial ports ("COM_Port#ttyUSB0"); empty when there is none.
std::filesystem::path DeviceOfPort(const std::string& portId);

}  // namespace tools
