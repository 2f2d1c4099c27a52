/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Polls a camera until its cable is pulled, and shows how an application is told
 */

#include <atomic>
#include <chrono>
#include <exception>
#include <thread>

#include "camera.h"
#include "vanto/DeviceRemovalCallback.h"

int main() {
    try {
        const OpenCamera camera;
        std::atomic<bool> gone{false};
        // Runs on whichever thread finds out: note it and return. Closing the device here is allowed, destroying it
        // is not.
        Vanto::RegisterRemovalCallback(*camera.operator->(), [&gone](Vanto::IVantoDevice* device) {
            std::cout << device->GetDeviceInfo().GetFriendlyName() << " is gone\n";
            gone = true;
        });

        const GenApi::CFloatPtr temperature = camera.Feature("DeviceTemperature");
        std::cout << "pull the cable\n" << std::flush;
        while (!gone) {
            try {
                std::cout << temperature->GetValue(false, true) << " C\n" << std::flush;
            } catch (const GenICam::GenericException& error) {
                std::cout << error.GetDescription() << '\n';
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        }
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
