/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl doctor: what a stuck user needs to know
 */
#pragma once

#include "commands/Command.h"

namespace tools {

class DoctorCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    bool m_json = false;
};

}  // namespace tools
