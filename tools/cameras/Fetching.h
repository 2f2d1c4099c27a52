/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Fetching: shows how much of a camera's description has come in
 */
#pragma once

#include <string>

#include "cameras/PortWatch.h"
#include "output/Progress.h"

namespace tools {

/// A line of progress for a command that connects to a camera; with percent while the description is fetched.
/// Thread-bound.
class Fetching {
public:
    Fetching(PortWatch& ports, Output& output, const std::string& what);
    ~Fetching();
    Fetching(const Fetching&) = delete;
    Fetching& operator=(const Fetching&) = delete;

    std::chrono::milliseconds Elapsed() const { return m_progress.Elapsed(); }

private:
    PortWatch& m_ports;
    Progress m_progress;
};

}  // namespace tools
