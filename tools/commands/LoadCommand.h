/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl load: the settings of a file into a camera
 */
#pragma once

#include <string>

#include "commands/Command.h"

namespace tools {

class LoadCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::string m_file;
};

}  // namespace tools
