/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl help: explains a command
 */
#include <algorithm>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "commands/Options.h"
#include "output/Output.h"

namespace tools {

namespace {

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const CommandEntry* entry : CommandTable())
        if (const std::string name = entry->name; *entry->summary != '\0')
            names.push_back(name.substr(0, name.find(' ')));
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

class HelpCommand : public Command {
public:
    void Declare(Options& options) override {
        options.OptionalArguments("WORD", m_words,
                                  "The command, of one word or two; without it the commands are listed");
        options.Offer("WORD", Names());
        options.Example("vanto-cl help config check", "Explain 'vanto-cl config check'");
    }

    ExitCode Run(Output& output) override {
        output.Print(HelpOf(m_words, output));
        return ExitCode::kDone;
    }

private:
    std::vector<std::string> m_words;
};

}  // namespace

constexpr CommandEntry kHelpCommand{"help", "Explain a command", &Make<HelpCommand>};

}  // namespace tools
