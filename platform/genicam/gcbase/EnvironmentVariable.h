/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One environment variable, as the system knows it
 */
#pragma once

#include <string>

namespace GenICam {

/// The variable's value; empty when it is not set.
std::string EnvironmentVariable(const std::string& name);

}  // namespace GenICam
