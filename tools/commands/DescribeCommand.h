/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl describe: a camera description from a file
 */
#pragma once

#include <string>

#include "commands/Command.h"

namespace tools {

class DescribeCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_file;
    bool m_tree = false;
    bool m_json = false;
    bool m_check = false;
};

}  // namespace tools
