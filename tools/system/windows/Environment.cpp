/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Environment variables of this process on Windows
 */
#include "system/Environment.h"

#include <windows.h>

namespace tools {

// The libraries read the system's environment; the C library has a copy of its own, which they do not see.
std::optional<std::string> GetEnvironment(const char* name) {
    std::string value(256, '\0');
    for (;;) {
        ::SetLastError(ERROR_SUCCESS);
        const DWORD length = ::GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(value.size()));
        if (length == 0 && ::GetLastError() == ERROR_ENVVAR_NOT_FOUND)
            return std::nullopt;
        const bool complete = length < value.size();
        value.resize(length);
        if (complete)
            return value;
    }
}

void SetEnvironment(const char* name, const std::string& value) {
    ::SetEnvironmentVariableA(name, value.c_str());
}

void UnsetEnvironment(const char* name) {
    ::SetEnvironmentVariableA(name, nullptr);
}

std::string SystemName() {
    SYSTEM_INFO info{};
    ::GetNativeSystemInfo(&info);
    return info.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_AMD64 ? "Windows x86_64" : "Windows";
}

}  // namespace tools
