/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl config show: what the port configuration file says
 */
#pragma once

#include "commands/Command.h"

namespace tools {

class ConfigShowCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    bool m_json = false;
};

}  // namespace tools
