/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl watch: prints features when they change
 */
#pragma once

#include <string>
#include <vector>

#include "commands/Command.h"

namespace tools {

class WatchCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::vector<std::string> m_names;
    std::string m_interval = "0.5";
    std::string m_count;
    bool m_json = false;
};

}  // namespace tools
