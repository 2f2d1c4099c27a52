/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A library that does not come out of its own constructor as long as a test wants it to
 */

#include <chrono>
#include <filesystem>
#include <thread>

#include "os/Environment.h"

namespace {

struct Hang {
    Hang() {
        // The C library of Windows knows only the variables that were set when the program began.
        const std::string path = os::GetEnvironment("SCRIPTED_HANGS_WHILE_MISSING").text;
        std::error_code error;
        while (!path.empty() && !std::filesystem::exists(path, error))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
} const hang;

}  // namespace
