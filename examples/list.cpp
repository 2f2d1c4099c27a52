/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Lists the cameras of this machine
 */

#include <exception>
#include <iostream>

#include "vanto/TlFactory.h"

int main() {
    try {
        Vanto::DeviceInfoList cameras;
        Vanto::CTlFactory::GetInstance().EnumerateDevices(cameras);
        for (const Vanto::CDeviceInfo& camera : cameras)
            std::cout << camera.GetFriendlyName() << "  " << camera.GetFullName() << '\n';
        std::cout << cameras.size() << " cameras\n";
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
