/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl doctor: what a stuck user needs to know
 */

#include "commands/Commands.h"
#include "commands/Options.h"
#include "doctor/Examinations.h"
#include "output/Output.h"

namespace tools {

namespace {

class DoctorCommand : public Command {
public:
    void Declare(Options& options) override {
        options.Flag("--json", m_json, "Print a JSON object");
        options.Notes(
            "Each camera is opened once; its description is fetched for that where it is not known yet. Ends "
            "with 0 whatever it finds: the verdict is in the text, and in \"Healthy\" of the JSON object.");
        options.Example("vanto-cl doctor", "Look at everything");
        options.Example("vanto-cl doctor --json > report.json", "A report to send to somebody");
    }

    ExitCode Run(Output& output) override {
        const Report report = Examine(output);
        if (m_json)
            output.Line(ToText(ToJson(report)));
        else
            Print(output, report);
        return ExitCode::kDone;
    }

private:
    bool m_json = false;
};

}  // namespace

constexpr CommandEntry kDoctorCommand{"doctor", "Look for what keeps cameras from being found", &Make<DoctorCommand>};

}  // namespace tools
