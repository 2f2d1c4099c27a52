/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The threads of this process, and how often each has run
 */

#include "ThreadSwitches.h"
#include "tests/support/WaitUntil.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace integration {

namespace {

std::uint64_t SwitchesOf(const std::filesystem::path& task) {
    std::ifstream status(task / "status");
    std::uint64_t switches = 0;
    for (std::string line; std::getline(status, line);) {
        if (line.find("ctxt_switches:") != std::string::npos)
            switches += std::stoull(line.substr(line.find(':') + 1));
    }
    return switches;
}

}  // namespace

std::map<std::string, std::uint64_t> ThreadSwitches() {
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/thread-self").filename();
    std::map<std::string, std::uint64_t> switches;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        if (task.path().filename() != self)
            switches[task.path().filename().string()] = SwitchesOf(task.path());
    }
    return switches;
}

bool WaitForOtherThreads(std::size_t expected) {
    return test_support::WaitUntil([expected] { return ThreadSwitches().size() == expected; });
}

}  // namespace integration
