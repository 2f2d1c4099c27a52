/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl config check: what is wrong with the port configuration file
 */
#pragma once

#include <string>

#include "commands/Command.h"

namespace tools {

class ConfigCheckCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    bool m_json = false;
    std::string m_file;
};

}  // namespace tools
