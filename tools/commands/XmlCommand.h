/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl xml: a camera's own description
 */
#pragma once

#include <string>

#include "commands/Command.h"

namespace tools {

class XmlCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::string m_file;
};

}  // namespace tools
