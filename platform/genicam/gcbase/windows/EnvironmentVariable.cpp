/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One environment variable on Windows
 */

#include "EnvironmentVariable.h"

#include <windows.h>

namespace GenICam {

// The system is asked: each C library in the process has a copy of its own, which does not see later changes.
std::string EnvironmentVariable(const std::string& name) {
    std::string value(256, '\0');
    for (;;) {
        const DWORD length = ::GetEnvironmentVariableA(name.c_str(), value.data(), static_cast<DWORD>(value.size()));
        const bool complete = length < value.size();
        value.resize(length);
        if (complete)
            return value;
    }
}

}  // namespace GenICam
