/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl config path: where the port configuration file is looked for
 */
#pragma once

#include "commands/Command.h"

namespace tools {

class ConfigPathCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    bool m_json = false;
};

}  // namespace tools
