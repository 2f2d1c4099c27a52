/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the module found on this machine, and why it refused the rest
 */
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Base/GCString.h"
#include "Base/GCStringVector.h"
#include "CLProtocol/CLException.h"

namespace CLProtocol {

/// One library file that the module considered.
struct LibraryReport {
    GenICam::gcstring path;           ///<  the library's file
    GenICam::gcstring version;        ///< of the interface, "1.0" ...; empty when unknown
    GenICam::gcstring maker;          ///< of a serial library
    GenICam::gcstring_vector offers;  ///< port names of a serial library, short DeviceID templates of a driver
    GenICam::gcstring refusal;        ///< empty: the library is used. Else the reason why not
};

/// Folders in which serial libraries are looked for, in order.
CLPROTOCOL_API void GetSerialLibraryFolders(GenICam::gcstring_vector& folders);
/// Locations in which drivers are looked for, in order, as they stand in a DeviceID.
CLPROTOCOL_API void GetDriverLocations(GenICam::gcstring_vector& locations);
/// Looks for serial libraries and tells about each.
CLPROTOCOL_API std::vector<LibraryReport> GetSerialLibraries();
/// Looks for drivers and tells about each.
CLPROTOCOL_API std::vector<LibraryReport> GetDrivers();
/// Folder of fetched descriptions; empty when the user has none.
CLPROTOCOL_API GenICam::gcstring GetCacheFolder();

/// Unloads all foreign libraries that no connection uses; they are loaded again when they are needed. The module
/// never does so by itself, nor at the end of the process.
CLPROTOCOL_API void ReleaseLibraries();

/// How long the module waits for foreign libraries.
struct Patience {
    std::uint32_t callMs = 30000;          ///< for a function that neither returns nor uses the serial line
    std::uint32_t pendingWriteMs = 60000;  ///< for a write that the camera reports as pending
};
/// Changes it for all ports. Thread-safe.
CLPROTOCOL_API void SetPatience(const Patience& patience) noexcept;
CLPROTOCOL_API Patience GetPatience() noexcept;
/// Threads that were given up because a foreign library hangs, and that have not come back from it. When a process ends
/// while there are some, the library's objects are destroyed under them.
CLPROTOCOL_API std::size_t CountStuckThreads() noexcept;

}  // namespace CLProtocol
