/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl save: the settings of a camera into a file
 */
#pragma once

#include <string>

#include "commands/Command.h"

namespace tools {

class SaveCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::string m_file;
};

}  // namespace tools
