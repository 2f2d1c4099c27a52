/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl features: a camera's features and their values
 */
#pragma once

#include <string>

#include "commands/Command.h"

namespace tools {

class FeaturesCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::string m_device;
    std::string m_visibility = "guru";
    bool m_tree = false;
    bool m_json = false;
};

}  // namespace tools
