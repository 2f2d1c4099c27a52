/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl exec: executes a command of the camera
 */
#pragma once

#include <string>

#include "commands/Command.h"

namespace tools {

class ExecCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::string m_command;
    std::string m_timeout = "10";
};

}  // namespace tools
