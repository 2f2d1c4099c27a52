/* SPDX-License-Identifier: Apache-2.0 */
/*
 * What python_bench.py measures, in C++: "frames COUNT" or "reads COUNT" prints seconds, and processor seconds
 */
#include <chrono>
#include <ctime>
#include <exception>
#include <iostream>
#include <string>

#include "vanto/Camera.h"

namespace {

template <class Action>
void Measure(const Action& action) {
    const auto begin = std::chrono::steady_clock::now();
    const std::clock_t processor = std::clock();
    action();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    std::cout << seconds.count() << ' ' << static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC << std::endl;
}

void TakeFrames(const Vanto::Camera& camera, int count) {
    camera["Width"] = 1024;
    camera["Height"] = 1024;
    Vanto::FrameStream stream = camera.Stream();
    unsigned sum = stream.Next()->Data()[0];
    Measure([&] {
        for (int taken = 0; taken < count; ++taken)
            sum += stream.Next()->Data()[0];
    });
    std::cerr << (sum == 0 ? "" : " ");
}

void ReadFeature(const Vanto::Camera& camera, int count) {
    std::int64_t sum = camera.Get<std::int64_t>("Width");
    Measure([&] {
        for (int read = 0; read < count; ++read)
            sum += camera.Get<std::int64_t>("Width");
    });
    std::cerr << (sum == 0 ? " " : "");
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc != 3)
            throw std::invalid_argument("usage: frames COUNT | reads COUNT");
        const Vanto::Camera camera;
        if (std::string(argv[1]) == "frames")
            TakeFrames(camera, std::stoi(argv[2]));
        else
            ReadFeature(camera, std::stoi(argv[2]));
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
