/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl ports: the serial ports of the machine
 */
#pragma once

#include "commands/Command.h"

namespace tools {

class PortsCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    bool m_json = false;
};

}  // namespace tools
