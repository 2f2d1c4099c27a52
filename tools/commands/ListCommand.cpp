/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl list: the cameras, or why there are none
 */
#include <fmt/format.h>

#include <chrono>
#include <string>
#include <vector>

#include "cameras/BaudRates.h"
#include "cameras/CameraList.h"
#include "cameras/KnownCamerasFile.h"
#include "cameras/Reasons.h"
#include "cameras/Records.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "features/FeatureWords.h"
#include "output/Json.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Table.h"
#include "output/Text.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

Json ToJson(const ListedCamera& camera) {
    Json json{{"Index", camera.known ? Json(camera.known->number) : Json(nullptr)},
              {"State", camera.user ? "in use" : "ready"},
              {"UsedBy", camera.user ? camera.user->ToJson() : Json(nullptr)},
              {"BaudRate", camera.baudRate != 0 ? Json(camera.baudRate) : Json(nullptr)}};
    const Vanto::CDeviceInfo record = camera.record  ? *camera.record
                                      : camera.known ? RecordOf(camera.known->address)
                                                     : Vanto::CDeviceInfo();
    GenICam::gcstring_vector names;
    record.GetPropertyNames(names);
    for (const GenICam::gcstring& name : names)
        json[name.str()] = PropertyOf(record, name.c_str());
    json["PortID"] = camera.portId;
    return json;
}

void PrintJson(Output& output, const std::vector<ListedCamera>& cameras) {
    Json json = Json::array();
    for (const ListedCamera& camera : cameras)
        json.push_back(ToJson(camera));
    output.Line(ToText(json));
}

void PrintTable(Output& output, const std::vector<ListedCamera>& cameras) {
    Table table({{"#", true}, KeyColumn("Camera"), KeyColumn("Port"), {"Baud rate", true}, {"State"}});
    for (const ListedCamera& camera : cameras)
        table.AddRow({camera.known ? std::to_string(camera.known->number) : "-",
                      camera.known ? camera.Name() : "unknown", camera.portId,
                      camera.baudRate != 0 ? std::to_string(camera.baudRate) : "",
                      camera.user ? Table::Cell("in use by " + camera.user->Text(), Style::kWarning)
                                  : Table::Cell("ready", Style::kGood)});
    table.PrintTo(output);
}

std::string Summary(const Enumeration& enumeration, std::chrono::milliseconds elapsed) {
    const std::size_t inUse = enumeration.PortsInUse().size();
    return fmt::format("{} {} found in {}{}", enumeration.cameras.size(),
                       enumeration.cameras.size() == 1 ? "camera" : "cameras", DurationText(elapsed),
                       inUse == 0 ? "" : fmt::format(", {} in use", inUse));
}

/// In JSON the array is the whole answer, so the reasons go beside it.
void PrintReasons(Output& output, const std::vector<Reason>& reasons, bool beside) {
    const auto print = [&](const std::string& text, const char* indent) {
        beside ? output.Note(text, indent) : output.Prose(text, indent);
    };
    print("No camera was found.", "");
    for (const Reason& reason : reasons) {
        print(PrintableLines(reason.cause), "");
        if (!reason.remedy.empty())
            print("  " + PrintableLines(reason.remedy), "  ");
    }
}

void Warn(Output& output, const Enumeration& enumeration, const std::vector<ListedCamera>& cameras) {
    for (const SilentPort& port : enumeration.silentPorts)
        if (port.advice.state != PortState::kInUse) {
            output.Warn(fmt::format("port '{}': {}", Printable(port.portId), Printable(port.advice.reason)));
            if (!port.advice.hint.empty())
                output.Note("  " + Printable(port.advice.hint), "  ");
        }
    for (const ListedCamera& camera : cameras)
        if (camera.baudRate > camera.RestBaudRate())
            output.Warn(StrandedText(camera.Name(), camera.portId, camera.baudRate, camera.RestBaudRate()));
}

class ListCommand : public Command {
public:
    void Declare(Options& options) override {
        options.Flag("--json", m_json, "Print a JSON array of the cameras' info records");
        options.Flag("--forget", m_forget, "Forget the numbers of earlier lists and begin with 0");
        options.Notes(
            "Commands that take a DEVICE know a camera by its number here, its serial number, its friendly name, "
            "its full name or its port. A camera keeps its number when others come and go, and when it is "
            "plugged into another port.");
        options.Example("vanto-cl list", "The cameras, each with the number that other commands know it by");
        options.Example("vanto-cl list --json | jq -r \".[].SerialNumber\"", "The serial numbers, for a script");
        options.Example("vanto-cl --simulate=3 list", "Three simulated cameras");
    }

    ExitCode Run(Output& output) override {
        const Interruption::Watch watch;
        if (m_forget) {
            ChangeKnownCameras(output, [](KnownCameras& known) { known = KnownCameras(); });
            ForgetFeatureWords();
        }
        const TransportLayer layer;
        const auto begin = std::chrono::steady_clock::now();
        const Enumeration enumeration = EnumerateAndRemember(layer, output);
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
        const std::vector<ListedCamera> cameras = ListCameras(layer, enumeration, LoadKnownCameras(output));
        if (m_json)
            PrintJson(output, cameras);
        if (cameras.empty()) {
            ThrowIfInterrupted();
            PrintReasons(output, WhyNoCamera(layer, enumeration), m_json);
            return ExitCode::kDone;
        }
        if (!m_json) {
            PrintTable(output, cameras);
            output.Line(Summary(enumeration, elapsed));
        }
        Warn(output, enumeration, cameras);
        ThrowIfInterrupted();
        return ExitCode::kDone;
    }

private:
    bool m_json = false;
    bool m_forget = false;
};

}  // namespace

constexpr CommandEntry kListCommand{"list", "List the cameras, or say why there are none", &Make<ListCommand>};

}  // namespace tools
