/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What the module found on this machine, and how patient it is
 */

#include "CLProtocol/Diagnostics.h"

#include <atomic>

#include "DriverRegistry.h"
#include "SerialPorts.h"
#include "XmlCache.h"

namespace CLProtocol {

namespace {

std::atomic<std::uint32_t> g_callMs{Patience().callMs};
std::atomic<std::uint32_t> g_pendingWriteMs{Patience().pendingWriteMs};

void Assign(GenICam::gcstring_vector& target, const std::vector<std::string>& source) {
    target.clear();
    for (const std::string& text : source)
        target.push_back(text);
}

}  // namespace

void GetSerialLibraryFolders(GenICam::gcstring_vector& folders) {
    Assign(folders, SerialPorts::Folders());
}

void GetDriverLocations(GenICam::gcstring_vector& locations) {
    Assign(locations, DriverLocations());
}

std::vector<LibraryReport> GetSerialLibraries() {
    return SerialPorts::GetInstance().Report();
}

std::vector<LibraryReport> GetDrivers() {
    return DriverRegistry::GetInstance().Report();
}

GenICam::gcstring GetCacheFolder() {
    return XmlCache::Folder();
}

void ReleaseLibraries() {
    SerialPorts::GetInstance().Release();
    DriverRegistry::GetInstance().Release();
}

void SetPatience(const Patience& patience) noexcept {
    g_callMs = patience.callMs;
    g_pendingWriteMs = patience.pendingWriteMs;
}

Patience GetPatience() noexcept {
    return {g_callMs, g_pendingWriteMs};
}

}  // namespace CLProtocol
