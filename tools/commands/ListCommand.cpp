/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl list: the cameras, or why there are none
 */
#include <fmt/format.h>
#include <memory>
#include <optional>

#include "cameras/Reasons.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "output/Json.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Table.h"
#include "output/Text.h"

namespace tools {

namespace {

class ListCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    bool m_json = false;
};

void PrintJson(Output& output, const Vanto::DeviceInfoList& cameras) {
    Json json = Json::array();
    for (const Vanto::CDeviceInfo& camera : cameras) {
        Json record = Json::object();
        GenICam::gcstring_vector names;
        camera.GetPropertyNames(names);
        for (const GenICam::gcstring& name : names)
            record[name.str()] = PropertyOf(camera, name.c_str());
        json.push_back(std::move(record));
    }
    output.Line(ToText(json));
}

void PrintTable(Output& output, const Vanto::DeviceInfoList& cameras) {
    Table table({{"#", true}, {"Camera"}, {"Model"}, {"Serial number"}, {"Port"}, {"Baud rate"}});
    for (std::size_t index = 0; index < cameras.size(); ++index) {
        const Vanto::CDeviceInfo& camera = cameras[index];
        const std::string rate = PropertyOf(camera, "InitialBaudRate");
        table.AddRow({std::to_string(index), PropertyOf(camera, "FriendlyName"), PropertyOf(camera, "ModelName"),
                      PropertyOf(camera, "SerialNumber"), PropertyOf(camera, "PortID"),
                      rate.empty() ? "highest" : rate});
    }
    table.PrintTo(output);
}

/// In JSON the array is the whole answer, so the reasons go beside it.
void PrintReasons(Output& output, const std::vector<Reason>& reasons, bool beside) {
    std::string text;
    const auto width = static_cast<std::size_t>(beside ? 0 : output.Width());
    for (const Reason& reason : reasons) {
        text += fmt::format("\n{}", Wrapped(PrintableLines(reason.cause), width, ""));
        if (!reason.remedy.empty())
            text += fmt::format("\n  {}", Wrapped(PrintableLines(reason.remedy), width, "  "));
    }
    if (beside)
        output.Note("No camera was found." + text);
    else
        output.Line("No camera was found." + text);
}

}  // namespace

void ListCommand::Declare(Options& options) {
    options.Flag("--json", m_json, "Print a JSON array of the cameras' info records");
    options.Footer(
        "Commands that take a DEVICE know a camera by its number here, its serial number,\n"
        "its friendly name, its full name or its port.");
}

ExitCode ListCommand::Run(Output& output) {
    const TransportLayer layer;
    std::optional<Progress> progress(std::in_place, output, "Looking for cameras");
    const Enumeration enumeration = Enumerate(layer);
    const auto elapsed = progress->Elapsed();
    const std::vector<Reason> reasons = enumeration.cameras.empty()
                                            ? WhyNoCamera(layer, enumeration, enumeration.SilentPorts(true))
                                            : std::vector<Reason>();
    progress.reset();
    if (m_json)
        PrintJson(output, enumeration.cameras);
    if (enumeration.cameras.empty()) {
        PrintReasons(output, reasons, m_json);
        return ExitCode::kDone;
    }
    if (!m_json) {
        PrintTable(output, enumeration.cameras);
        output.Line(fmt::format("{} {} found in {}", enumeration.cameras.size(),
                                enumeration.cameras.size() == 1 ? "camera" : "cameras", DurationText(elapsed)));
    }
    for (const SilentPort& port : enumeration.SilentPorts(false))
        output.Warn(fmt::format("port '{}': {}", Printable(port.portId), Printable(port.reason)));
    return ExitCode::kDone;
}

std::unique_ptr<Command> MakeListCommand() {
    return std::make_unique<ListCommand>();
}

}  // namespace tools
