/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Simulation: cameras that are there as long as a command runs
 */
#pragma once

#include <optional>

#include "system/ChildProcess.h"
#include "system/Folders.h"
#include "system/Interruption.h"

namespace tools {

/// Simulated cameras on pseudo-terminals with a configuration of their own, put in place of the user's through the
/// environment. The environment is put back at the end.
class Simulation {
public:
    static constexpr int kMostCameras = 64;

    /// Whether this process has simulated cameras.
    static bool IsRunning() noexcept;

    explicit Simulation(int cameras);
    ~Simulation();
    Simulation(const Simulation&) = delete;
    Simulation& operator=(const Simulation&) = delete;

private:
    /// Sets a variable for as long as it lives.
    class Variable {
    public:
        Variable(const char* name, const std::string& value);
        ~Variable();
        Variable(const Variable&) = delete;
        Variable& operator=(const Variable&) = delete;

    private:
        const char* m_name;
        std::optional<std::string> m_before;
    };

    TemporaryFolder m_folder;
    ChildProcess m_simulator;
    Interruption::CleanUp m_cleanUp;
    std::optional<Variable> m_serialPath;
    std::optional<Variable> m_bindings;
    std::optional<Variable> m_state;
    std::optional<Variable> m_cache;
};

}  // namespace tools
