/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Where CLProtocol drivers lie
 */
#pragma once

#include <string>
#include <vector>

namespace CLProtocol {

/// A driver file in a location.
struct DriverFile {
    std::string location;  ///< as it stands in a DeviceID, environment variables included
    std::string name;      ///< without folder
};

std::vector<std::string> DriverLocations();
std::string ExpandLocation(const std::string& location);
std::string DriverPathIn(const std::string& location, const std::string& fileName);
std::vector<std::string> DescriptionFolders(const std::string& location);
std::vector<DriverFile> FindDriverFiles();

}  // namespace CLProtocol
