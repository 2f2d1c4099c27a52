/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A socket through which another program commands a simulator
 */
#pragma once

#include <memory>
#include <string>

namespace MarlowSim {

class Simulator;

/// One text command a line, one line of reply to each. Serves until it is destroyed.
class ControlServer {
public:
    virtual ~ControlServer() = default;

    /// \param[in] path Of a socket of the Unix domain, made here and removed in the end
    /// \throw std::system_error The system refuses the socket, or somebody listens there already
    static std::unique_ptr<ControlServer> Create(Simulator& simulator, const std::string& path);
};

}  // namespace MarlowSim
