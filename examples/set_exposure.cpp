/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Opens the first camera, or the one with the serial number given, and sets its exposure time in microseconds:
 * example-set_exposure 2500 [SERIAL]
 */

#include <cstdlib>
#include <exception>

#include "camera.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: " << argv[0] << " MICROSECONDS [SERIAL]\n";
        return 2;
    }
    try {
        Vanto::CDeviceInfo wanted;
        if (argc > 2)
            wanted.SetSerialNumber(argv[2]);
        const OpenCamera camera(wanted);
        std::cout << camera->GetDeviceInfo().GetFriendlyName() << '\n';

        const GenApi::CFloatPtr exposure = camera.Feature("ExposureTime");
        if (!GenApi::IsWritable(exposure)) {
            std::cerr << "this camera's exposure time can't be set\n";
            return 1;
        }
        std::cout << "from " << exposure->GetValue() << " us (" << exposure->GetMin() << " to " << exposure->GetMax()
                  << ")\n";
        exposure->SetValue(std::atof(argv[1]));
        std::cout << "to   " << exposure->GetValue() << " us\n";
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
