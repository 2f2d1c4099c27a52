/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The first program: opens the camera, sets a feature, and saves five images
 */
#include <iostream>
#include <string>

#include "vanto/Camera.h"

int main() {
    try {
        const Vanto::Camera camera;
        camera["Width"] = 1024;
        for (const Vanto::Frame& frame : camera.Grab(5))
            frame.Save("image" + std::to_string(frame.Number()) + ".png");
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
