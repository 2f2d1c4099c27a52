/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl set: changes features, all or none
 */
#pragma once

#include <string>
#include <vector>

#include "commands/Command.h"

namespace tools {

class SetCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::vector<std::string> m_assignments;
};

}  // namespace tools
