/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A serial line without a camera
 */
#pragma once

#include <filesystem>

#include "simulator/Simulator.h"

namespace tools_test {

/// A serial line on which nobody answers, linked under a path.
class SilentLine {
public:
    explicit SilentLine(const std::filesystem::path& link) : m_simulator(link.parent_path()) {
        MarlowSim::CameraOptions options;
        options.faults.silent = true;
        m_simulator.Add(link.filename().string(), options);
    }

private:
    MarlowSim::Simulator m_simulator;
};

}  // namespace tools_test
