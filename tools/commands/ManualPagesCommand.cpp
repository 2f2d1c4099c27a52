/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl manual-pages: writes the manual pages, for the build
 */
#include <filesystem>
#include <string>

#include "commands/Commands.h"
#include "commands/ManualPage.h"
#include "commands/Options.h"
#include "system/Files.h"

namespace tools {

namespace {

class ManualPagesCommand : public Command {
public:
    void Declare(Options& options) override { options.Argument("FOLDER", m_folder, "Where the pages go"); }

    ExitCode Run(Output&) override {
        const std::filesystem::path folder = PathOf(m_folder);
        const std::vector<CommandModel> commands = CommandModels();
        WriteFile(folder / "vanto-cl.1", MainManualPage(commands));
        for (const CommandModel& command : commands)
            if (command.IsForPeople())
                WriteFile(folder / ManualPageName(command), ManualPage(command));
        return ExitCode::kDone;
    }

private:
    std::string m_folder;
};

}  // namespace

constexpr CommandEntry kManualPagesCommand{"manual-pages", "", &Make<ManualPagesCommand>};

}  // namespace tools
