/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl set: changes features, all or none
 */
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/Assignments.h"
#include "features/OpenDevice.h"

namespace tools {

namespace {

class SetCommand : public DeviceCommand {
public:
    void Declare(Options& options) override {
        DeviceCommand::Declare(options);
        options.Arguments("NAME=VALUE", m_assignments, "Features and their new values, set in this order");
        options.Notes(
            "Values: 16, 0x10, 12.5, '2500 us', on, off, names of entries, bytes as 0x0102fe. All are checked "
            "before the first is written. When the camera refuses one nevertheless, those before it get their "
            "old values back.");
        options.Example("vanto-cl set 0 Width=1024 PixelFormat=Mono12", "Change two features");
        options.Example("vanto-cl set 0 'ExposureTime=2 ms'", "A multiple of the unit of the feature");
    }

    ExitCode Run(Output& output) override {
        std::vector<Assignment> parsed;
        for (const std::string& word : m_assignments)
            parsed.push_back(ParseAssignment(word));
        const OpenDevice device(Device(), output);
        Assignments assignments(device.Nodes(), parsed);
        assignments.Check();
        assignments.Apply();
        return ExitCode::kDone;
    }

private:
    std::vector<std::string> m_assignments;
};

}  // namespace

constexpr CommandEntry kSetCommand{"set", "Change features, all or none", &Make<SetCommand>};

}  // namespace tools
