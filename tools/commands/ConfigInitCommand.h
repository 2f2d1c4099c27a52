/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl config init: a new port configuration file for the ports of the machine
 */
#pragma once

#include "commands/Command.h"

namespace tools {

class ConfigInitCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    bool m_force = false;
};

}  // namespace tools
