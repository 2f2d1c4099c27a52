/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl read: registers of the camera
 */
#pragma once

#include <string>

#include "commands/Command.h"

namespace tools {

class ReadCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::string m_address;
    std::string m_length;
    std::string m_file;
    bool m_dump = false;
};

}  // namespace tools
