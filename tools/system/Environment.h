/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Environment variables of this process
 */
#pragma once

#include <optional>
#include <string>

namespace tools {

/// A variable's value, nothing when it is not set. An empty value is a value.
std::optional<std::string> GetEnvironment(const char* name);
/// Only while no other thread runs that reads the environment.
void SetEnvironment(const char* name, const std::string& value);
void UnsetEnvironment(const char* name);
/// Name, release and kind of machine of the system: "Linux 6.1.0-18-amd64 x86_64".
std::string SystemName();

}  // namespace tools
