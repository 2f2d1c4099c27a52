/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl grab: takes images and saves them
 */
#include <fmt/format.h>
#include <chrono>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cameras/DeviceChoice.h"
#include "commands/Commands.h"
#include "commands/Options.h"
#include "features/Assignments.h"
#include "features/OpenDevice.h"
#include "features/OptionNumbers.h"
#include "images/Acquisition.h"
#include "images/FrameCounts.h"
#include "images/FrameFiles.h"
#include "images/GrabProgress.h"
#include "output/Json.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Files.h"
#include "system/Interruptible.h"
#include "vanto/PixelTypeMapper.h"

namespace tools {

namespace {

class GrabCommand : public Command {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    void Grab(Acquisition& acquisition, FrameCounts& counts, FrameFiles& files, GrabProgress& progress) const;
    void PrintSummary(Output& output, const FrameCounts& counts, const FrameFiles& files, double seconds) const;

    std::string m_device;
    std::string m_countText = "1";
    std::string m_folder = ".";
    std::string m_format = "png";
    std::string m_timeoutText = "5";
    std::string m_buffersText = "8";
    std::vector<std::string> m_settings;
    bool m_json = false;
    std::int64_t m_count = 0;
    std::chrono::milliseconds m_timeout{0};
};

constexpr std::int64_t kMostBuffers = 4096;

void ApplySettings(GenApi::INodeMap& nodes, const std::vector<Assignment>& settings) {
    Assignments assignments(nodes, settings);
    assignments.Check();
    assignments.Apply();
}

// Better before the first frame than behind the thousandth.
void CheckPixelFormat(GenApi::INodeMap& nodes, const FrameFiles& files) {
    const GenApi::CEnumerationPtr pixelFormat = nodes.GetNode("PixelFormat");
    if (!GenApi::IsReadable(pixelFormat))
        return;
    const Vanto::CPixelTypeMapper types(static_cast<GenApi::IEnumeration*>(pixelFormat));
    files.CheckPixelType(types.GetVantoPixelTypeFromNodeValue(pixelFormat->GetIntValue()));
}

void PrintFiles(Output& output, const FrameFiles& files) {
    if (files.Count() == 1)
        output.Line("saved " + Printable(files.First().string()));
    else if (files.Count() > 1)
        output.Line(fmt::format("saved {} to {}", Printable(files.First().string()),
                                Printable(files.Last().filename().string())));
}

}  // namespace

void GrabCommand::Declare(Options& options) {
    options.Argument("DEVICE", m_device, kDeviceHelp);
    options.Value("-n,--count", m_countText, "COUNT", "How many frames (1)");
    options.Value("-o,--output", m_folder, "FOLDER", "Where the files go; made where it is missing (.)");
    options.Choice("--format", m_format, {std::begin(kFrameFormats), std::end(kFrameFormats)},
                   "What kind of files (png); pgm writes colours as ppm, none saves nothing");
    options.Value("--timeout", m_timeoutText, "SECONDS", "How long to wait for a frame (5)");
    options.Value("--buffers", m_buffersText, "N", "How many frames may wait to be saved (8)");
    options.Values("--set", m_settings, "NAME=VALUE", "Set a feature before; may be repeated");
    options.Flag("--json", m_json, "Print the summary as a JSON object");
    options.Notes(
        "The summary counts: delivered, frames that came into a buffer; dropped, those missing between them; "
        "cut, delivered with a part of their bytes; failed, arrived without usable data. Frames that are cut "
        "or failed make the exit code 1. Ctrl-C ends the grab; what was taken is saved.");
    options.Example("vanto-cl grab 0 -n 10 -o images", "Save ten images as PNG");
    options.Example("vanto-cl grab 0 --set Width=640 --format tiff", "Set a feature, then save an image as TIFF");
}

ExitCode GrabCommand::Run(Output& output) {
    m_count = NumberOption("--count", m_countText, 1, std::numeric_limits<std::int64_t>::max());
    m_timeout = DurationOption("--timeout", m_timeoutText);
    const auto buffers = static_cast<std::size_t>(NumberOption("--buffers", m_buffersText, 1, kMostBuffers));
    std::vector<Assignment> settings;
    for (const std::string& word : m_settings)
        settings.push_back(ParseAssignment(word));
    const OpenDevice device(m_device, output);
    ApplySettings(device.Nodes(), settings);
    FrameFiles files(m_format, PathOf(m_folder));
    CheckPixelFormat(device.Nodes(), files);
    FrameCounts counts;
    Acquisition acquisition(device, buffers);
    std::optional<GrabProgress> progress(std::in_place, output, static_cast<std::uint64_t>(m_count));
    try {
        Grab(acquisition, counts, files, *progress);
    } catch (...) {
        const double seconds = progress->Seconds();
        progress.reset();
        PrintSummary(output, counts, files, seconds);
        throw;
    }
    const double seconds = progress->Seconds();
    progress.reset();
    acquisition.Finish();
    PrintSummary(output, counts, files, seconds);
    return counts.Cut() == 0 && counts.Failed() == 0 ? ExitCode::kDone : ExitCode::kFailed;
}

void GrabCommand::Grab(Acquisition& acquisition, FrameCounts& counts, FrameFiles& files, GrabProgress& progress) const {
    for (std::int64_t taken = 0; taken < m_count; ++taken) {
        ThrowIfInterrupted();
        const std::optional<Vanto::GrabResult> result = acquisition.Next(m_timeout);
        if (!result) {
            ThrowIfInterrupted();
            throw ToolError(
                fmt::format("no frame came within {}", DurationText(m_timeout)),
                "Is the image cable plugged in, and does the camera wait for a trigger? --timeout waits longer.");
        }
        counts.Add(*result);
        if (result->Succeeded())
            files.Save(*result);
        acquisition.QueueAgain(*result);
        progress.Show(counts);
    }
}

void GrabCommand::PrintSummary(Output& output, const FrameCounts& counts, const FrameFiles& files,
                               double seconds) const {
    if (m_json) {
        output.Line(ToText(Json{{"Delivered", counts.Delivered()},
                                {"Dropped", counts.Dropped()},
                                {"Cut", counts.Cut()},
                                {"Failed", counts.Failed()},
                                {"Bytes", counts.Bytes()},
                                {"Seconds", seconds},
                                {"Saved", files.Count()},
                                {"FirstFile", files.First().string()},
                                {"LastFile", files.Last().string()}}));
        return;
    }
    output.Line(fmt::format("{} delivered, {} dropped, {} cut, {} failed in {}: {}", counts.Delivered(),
                            counts.Dropped(), counts.Cut(), counts.Failed(),
                            DurationText(std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000.0))),
                            RateText(counts, seconds)));
    PrintFiles(output, files);
}

std::unique_ptr<Command> MakeGrabCommand() {
    return std::make_unique<GrabCommand>();
}

}  // namespace tools
