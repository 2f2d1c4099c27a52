/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Environment variables
 */
#pragma once

#include <cstddef>
#include <string>

namespace os {

/// What reading an environment variable into a buffer of fixed size yields.
enum class EnvironmentStatus {
    kAbsent,   ///< the variable does not exist
    kEmpty,    ///< it exists and holds nothing
    kTooLong,  ///< it does not fit, its terminating NUL included
    kPresent   ///< text holds it
};

struct EnvironmentValue {
    EnvironmentStatus status = EnvironmentStatus::kAbsent;
    std::string text;  ///< empty unless status is kPresent
};

EnvironmentValue GetEnvironment(const char* name, std::size_t bufferSize = 32768);
bool SetEnvironment(const char* name, const std::string& value) noexcept;
bool UnsetEnvironment(const char* name) noexcept;

}  // namespace os
