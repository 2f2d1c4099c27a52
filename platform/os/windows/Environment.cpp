/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Environment variables on Windows
 */

#include "os/Environment.h"

#include <windows.h>

#include <algorithm>

namespace os {

/**
 * \brief Read an environment variable as into a buffer of fixed size
 * \param[in] name Name of the variable
 * \param[in] bufferSize Bytes that the value may take, its terminating NUL included
 * \return Which of the four cases it is, and the value where it is present
 */
EnvironmentValue GetEnvironment(const char* name, std::size_t bufferSize) {
    if (name == nullptr)
        return {EnvironmentStatus::kAbsent, {}};
    std::string text(std::max<std::size_t>(bufferSize, 1), '\0');
    ::SetLastError(ERROR_SUCCESS);
    const DWORD length = ::GetEnvironmentVariableA(name, text.data(), static_cast<DWORD>(text.size()));
    if (length == 0)
        return {::GetLastError() == ERROR_ENVVAR_NOT_FOUND ? EnvironmentStatus::kAbsent : EnvironmentStatus::kEmpty,
                {}};
    if (length >= text.size())
        return {EnvironmentStatus::kTooLong, {}};
    text.resize(length);
    return {EnvironmentStatus::kPresent, std::move(text)};
}

/// Sets a variable, to the empty value too; false when the system refuses.
bool SetEnvironment(const char* name, const std::string& value) noexcept {
    return name != nullptr && ::SetEnvironmentVariableA(name, value.c_str()) != 0;
}

/// Removes a variable, which need not exist; false when the system refuses.
bool UnsetEnvironment(const char* name) noexcept {
    return name != nullptr &&
           (::SetEnvironmentVariableA(name, nullptr) != 0 || ::GetLastError() == ERROR_ENVVAR_NOT_FOUND);
}

}  // namespace os
