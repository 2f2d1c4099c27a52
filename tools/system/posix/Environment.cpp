/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Environment variables of this process
 */
#include "system/Environment.h"

#include <sys/utsname.h>

#include <cstdlib>

namespace tools {

std::optional<std::string> GetEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

void SetEnvironment(const char* name, const std::string& value) {
    ::setenv(name, value.c_str(), 1);
}

void UnsetEnvironment(const char* name) {
    ::unsetenv(name);
}

std::string SystemName() {
    utsname name{};
    if (::uname(&name) != 0)
        return "an unknown system";
    return std::string(name.sysname) + " " + name.release + " " + name.machine;
}

}  // namespace tools
