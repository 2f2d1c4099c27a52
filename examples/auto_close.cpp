/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Gives the serial port back to others whenever the camera was left alone for half a second
 */

#include <chrono>
#include <exception>
#include <thread>

#include "camera.h"

int main() {
    try {
        const OpenCamera camera;
        GenApi::INodeMap* parameters = camera->GetTLNodeMap();
        const GenApi::CIntegerPtr timeout = parameters->GetNode("AutoCloseTimeout");
        timeout->SetValue(500);  // milliseconds; 0 keeps the port open

        const GenApi::CIntegerPtr width = camera.Feature("Width");
        std::cout << "Width is " << width->GetValue(false, true) << '\n';
        std::this_thread::sleep_for(std::chrono::seconds(1));  // the port closes meanwhile
        std::cout << "Width is " << width->GetValue(false, true) << " after the port was opened again\n";

        timeout->SetValue(0);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
