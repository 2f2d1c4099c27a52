/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What a simulated camera is, and what goes wrong with it
 */
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace MarlowSim {

/// Faults of the line and of the camera. Packets of both directions count together, those that get lost included.
struct FaultSettings {
    double loss = 0;    ///< probability that a packet gets lost
    double damage = 0;  ///< probability that bytes of a packet are changed, dropped or added
    double repeat = 0;  ///< probability that a packet comes twice
    double late = 0;    ///< probability that an acknowledge comes late by lateTime
    std::chrono::milliseconds lateTime{100};
    std::chrono::milliseconds delay{0};    ///< from a command to its acknowledge
    std::chrono::milliseconds pending{0};  ///< slow commands take so long, with pending acknowledges meanwhile
    bool silent = false;                   ///< hears nothing, says nothing
    bool nonsense = false;                 ///< says noise in place of each packet
    bool noise = false;                    ///< sends noise without end, and nothing else; hears every packet
    bool alwaysPending = false;            ///< answers every command with pending acknowledges, without end
    std::uint32_t lineLimit = 0;           ///< fastest rate that the line carries, bit/s; 0: all
    std::map<std::uint64_t, std::uint16_t> refusedReads;   ///< addresses, and the status that stands for their bytes
    std::map<std::uint64_t, std::uint16_t> refusedWrites;  ///< likewise

    // Countdowns; each ends itself.
    std::optional<std::uint64_t> failAt;       ///< the packet after so many more gets lost
    std::optional<std::uint64_t> dropAfter;    ///< the cable is pulled after so many more packets
    std::optional<std::uint64_t> silentAfter;  ///< the camera falls silent after so many more packets
};

/// How a camera comes to registers for its baud rate.
enum class SerialRegisters { kThere, kNone, kElsewhere };

/// What is wrong with the description that a camera holds, or with what its manifest says of it.
enum class DescriptionFault { kNone, kMissing, kEmpty, kWrongSha1, kDamagedZip };

struct CameraOptions {
    std::string model = "H2048";
    std::string serial;  ///< empty: one is made up from the order of the cameras
    std::string manufacturer = "Marlow";
    std::string family = "Heron";  ///< empty: no such register
    std::string userName;
    std::uint16_t genCpMajor = 1;
    std::uint16_t genCpMinor = 3;
    bool stacked = true;                       ///< has stacked commands
    bool writtenLength = true;                 ///< tells the length written
    std::uint32_t rates = 0xFF;                ///< supported baud rates, Camera Link flags; 9600 is among them
    std::optional<std::uint32_t> listedRates;  ///< those in the description; else those that are supported
    SerialRegisters serialRegisters = SerialRegisters::kThere;  ///< kElsewhere: their address leads nowhere
    std::string firmware = "2.0";                               ///< what the device version says
    bool sha1 = true;                                           ///< the manifest has the SHA-1 of the description
    std::uint32_t baud = 9600;        ///< rate at which the camera is when it is switched on, bit/s
    bool paced = false;               ///< both directions take the true time of the line
    bool zip = false;                 ///< the description is a ZIP file
    std::size_t descriptionSize = 0;  ///< pads the description's text to so many bytes; 0 or too few: as it is
    std::string descriptionFile;      ///< a file to use instead of the camera's own description
    DescriptionFault descriptionFault = DescriptionFault::kNone;
    std::uint64_t seed = 1;  ///< of all random choices
    FaultSettings faults;
};

struct NamedCamera {
    std::string name;
    CameraOptions options;
};

void SetOption(CameraOptions& options, std::string_view key, std::string_view value);
bool SetFault(FaultSettings& faults, std::string_view key, std::string_view value);
void SetOptions(CameraOptions& options, std::string_view list);
NamedCamera ParseCamera(std::string_view text);
std::string OptionsHelp();

}  // namespace MarlowSim
