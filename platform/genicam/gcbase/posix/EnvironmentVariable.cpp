/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One environment variable on POSIX systems
 */

#include "EnvironmentVariable.h"

#include <cstdlib>

namespace GenICam {

std::string EnvironmentVariable(const std::string& name) {
    const char* const value = std::getenv(name.c_str());
    return value != nullptr ? value : "";
}

}  // namespace GenICam
