/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A library that does not come out of its own constructor as long as a test wants it to
 */

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace {

struct Hang {
    Hang() {
        const char* const path = std::getenv("SCRIPTED_HANGS_WHILE_MISSING");
        std::error_code error;
        while (path != nullptr && *path != '\0' && !std::filesystem::exists(path, error))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
} const hang;

}  // namespace
