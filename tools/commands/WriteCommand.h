/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl write: registers of the camera
 */
#pragma once

#include <string>

#include "commands/Command.h"

namespace tools {

class WriteCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::string m_address;
    std::string m_bytes;
};

}  // namespace tools
