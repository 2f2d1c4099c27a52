/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The CLProtocol drivers of the machine
 */
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CLProtocol/DeviceID.h"
#include "CLProtocol/Diagnostics.h"
#include "DriverLibrary.h"
#include "DriverLocations.h"
#include "LibraryShelf.h"

namespace CLProtocol {

class DriverRegistry {
public:
    static DriverRegistry& GetInstance();

    std::vector<std::string> Templates();
    std::shared_ptr<const DriverLibrary> Get(const CDeviceID& deviceId);
    std::vector<LibraryReport> Report();
    void Release();

private:
    struct Scan;
    Scan ScanDriver(const std::string& path);

    LibraryShelf<DriverLibrary> m_libraries;
};

}  // namespace CLProtocol
