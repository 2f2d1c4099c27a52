/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Environment variables on POSIX systems
 */

#include "os/Environment.h"
#include "os/LockName.h"

#include <cstdlib>
#include <cstring>
#include <mutex>

namespace os {

namespace {

// The environment itself has no lock: this one keeps at least our own readers and writers apart.
constinit std::mutex g_environment;
[[maybe_unused]] const os::LockName g_environmentName(&g_environment, "environment");

}  // namespace

/**
 * \brief Read an environment variable as into a buffer of fixed size
 * \param[in] name Name of the variable
 * \param[in] bufferSize Bytes that the value may take, its terminating NUL included
 * \return Which of the four cases it is, and the value where it is present
 */
EnvironmentValue GetEnvironment(const char* name, std::size_t bufferSize) {
    const std::lock_guard lock(g_environment);
    const char* value = name != nullptr ? std::getenv(name) : nullptr;
    if (value == nullptr)
        return {EnvironmentStatus::kAbsent, {}};
    const std::size_t length = std::strlen(value);
    if (length == 0)
        return {EnvironmentStatus::kEmpty, {}};
    if (length >= bufferSize)
        return {EnvironmentStatus::kTooLong, {}};
    return {EnvironmentStatus::kPresent, std::string(value, length)};
}

/// Sets a variable, to the empty value too; false when the system refuses.
bool SetEnvironment(const char* name, const std::string& value) noexcept {
    const std::lock_guard lock(g_environment);
    return name != nullptr && ::setenv(name, value.c_str(), 1) == 0;
}

/// Removes a variable, which need not exist; false when the system refuses.
bool UnsetEnvironment(const char* name) noexcept {
    const std::lock_guard lock(g_environment);
    return name != nullptr && ::unsetenv(name) == 0;
}

}  // namespace os
