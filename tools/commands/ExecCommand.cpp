/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl exec: executes a command of the camera
 */
#include <fmt/format.h>
#include <string>

#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/FeatureText.h"
#include "features/FeatureWalk.h"
#include "features/OpenDevice.h"
#include "features/OptionNumbers.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

class ExecCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.Argument("COMMAND", m_command, "Name of a command feature");
        options.Value("--timeout", m_timeout, "SECONDS", "How long to wait until the command is done (10)");
        options.Example("vanto-cl exec 0 UserSetLoad", "Execute a command and wait until it is done");
    }

    ExitCode Run(Output& output) override {
        const auto timeout = DurationOption("--timeout", m_timeout);
        const OpenDevice device(Device(), output);
        GenApi::INode& node = FindFeature(device.Nodes(), m_command);
        if (node.GetPrincipalInterfaceType() != GenApi::intfICommand)
            throw ToolError(fmt::format("{} is no command: its kind is {}", m_command, KindText(node)),
                            "'vanto-cl set' changes features.");
        if (!GenApi::IsWritable(node.GetAccessMode()))
            throw ToolError(fmt::format("{} can't be executed at present", m_command));
        const Progress progress(output, "Waiting for " + m_command);
        device.Camera().Execute(m_command, timeout);
        return ExitCode::kDone;
    }

private:
    std::string m_command;
    std::string m_timeout = "10";
};

}  // namespace

constexpr CommandEntry kExecCommand{"exec", "Execute a command of a camera", &Make<ExecCommand>};

}  // namespace tools
