/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl complete: words for the completion of shells
 */
#pragma once

#include <string>
#include <vector>

#include "commands/Command.h"

namespace tools {

class CompleteCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    std::vector<std::string> m_words;
};

}  // namespace tools
