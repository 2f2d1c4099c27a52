/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: the environment of the process
 */
#pragma once

#include <string>

#include "os/Environment.h"

namespace test_support {

/// Sets an environment variable, or removes it, for its own lifetime.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::string& value) : m_name(name), m_previous(os::GetEnvironment(name)) {
        os::SetEnvironment(name, value);
    }
    explicit ScopedVariable(const char* name) : m_name(name), m_previous(os::GetEnvironment(name)) {
        os::UnsetEnvironment(name);
    }
    ~ScopedVariable() {
        if (m_previous.status == os::EnvironmentStatus::kAbsent)
            os::UnsetEnvironment(m_name);
        else
            os::SetEnvironment(m_name, m_previous.text);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* const m_name;
    const os::EnvironmentValue m_previous;
};

}  // namespace test_support
