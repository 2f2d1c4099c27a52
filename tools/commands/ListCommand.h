/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl list: the cameras, or why there are none
 */
#pragma once

#include "commands/Command.h"

namespace tools {

class ListCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    bool m_json = false;
};

}  // namespace tools
