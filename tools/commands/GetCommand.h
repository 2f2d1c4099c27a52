/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl get: values of features
 */
#pragma once

#include <string>
#include <vector>

#include "commands/Command.h"

namespace tools {

class GetCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::vector<std::string> m_names;
    bool m_json = false;
};

}  // namespace tools
