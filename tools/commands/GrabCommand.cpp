/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl grab: takes images and saves them
 */
#include <fmt/format.h>
#include <chrono>
#include <cstdint>
#include <exception>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "commands/DeviceCommand.h"
#include "commands/Options.h"
#include "features/Assignments.h"
#include "features/OpenDevice.h"
#include "features/OptionNumbers.h"
#include "images/FrameCounts.h"
#include "images/GrabProgress.h"
#include "images/GrabTarget.h"
#include "output/Json.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Interruptible.h"

namespace tools {

namespace {

class GrabCommand : public DeviceCommand {
public:
    void Declare(Options& options) override;
    ExitCode Run(Output& output) override;

private:
    void ReadOptions();
    void Grab(Vanto::FrameStream& stream, FrameCounts& counts, GrabTarget& target, GrabProgress& progress) const;
    Vanto::StreamOptions StreamOptions() const;
    std::optional<Vanto::Frame> Next(Vanto::FrameStream& stream) const;
    bool IsOver(const GrabProgress& progress) const;
    void PrintSummary(Output& output, const FrameCounts& counts, const GrabTarget& target, double seconds) const;
    Json Summary(const FrameCounts& counts, const GrabTarget& target, double seconds) const;

    std::string m_countText;
    std::string m_everyText = "1";
    std::string m_durationText;
    std::string m_timeoutText = "5";
    std::string m_buffersText = "8";
    std::vector<std::string> m_settings;
    bool m_json = false;
    GrabWishes m_wishes;
    std::int64_t m_count = 0;  // 0 for no end
    std::optional<std::chrono::milliseconds> m_duration;
    std::chrono::milliseconds m_timeout{0};
};

constexpr std::int64_t kMostBuffers = 4096;
constexpr double kMegabyte = 1e6;

void ApplySettings(GenApi::INodeMap& nodes, const std::vector<Assignment>& settings) {
    Assignments assignments(nodes, settings);
    assignments.Check();
    assignments.Apply();
}

std::string SavedText(const FrameFiles& files, double seconds) {
    std::string text = "saved " + Printable(files.First().string());
    if (files.Count() > 1)
        text += " to " + Printable(files.Last().filename().string());
    const auto count = static_cast<double>(files.Count());
    return seconds <= 0.0 ? text
                          : fmt::format("{} in {}: {:.1f} frames/s, {:.1f} MB/s", text,
                                        DurationText(std::chrono::milliseconds(static_cast<int>(seconds * 1000.0))),
                                        count / seconds, static_cast<double>(files.Bytes()) / kMegabyte / seconds);
}

}  // namespace

void GrabCommand::Declare(Options& options) {
    DeviceCommand::Declare(options);
    options.Value("-n,--count", m_countText, "COUNT", "How many frames (1); 0 goes on until Ctrl-C");
    options.Value("--duration", m_durationText, "SECONDS", "End after this time, without -n whatever came until then");
    options.Value("--every", m_everyText, "N", "Save each Nth frame only (1)");
    options.Value("-o,--output", m_wishes.output, "FOLDER",
                  "Where the files go, made where it is missing (.); - for standard output");
    options.Choice("--format", m_wishes.format, {std::begin(kFrameFormats), std::end(kFrameFormats)},
                   "What kind of files (png), or with '-o -' of stream (pnm); none saves nothing");
    options.Flag("--overwrite", m_wishes.overwrite, "Remove frames of an earlier grab from the folder");
    options.Value("--timeout", m_timeoutText, "SECONDS", "How long to wait for a frame (5)");
    options.Value("--buffers", m_buffersText, "N", "How many frames may wait to be saved (8)");
    options.Values("--set", m_settings, "NAME=VALUE", "Set a feature before; may be repeated");
    options.Flag("--stats", m_wishes.statistics, "Each second, tell of rate, drops and brightness");
    options.Flag("--preview", m_wishes.preview, "At the end, show an image in the terminal");
    options.Flag("--json", m_json, "Print the summary as a JSON object");
    options.Notes(
        "The summary counts: delivered, frames that came into a buffer; dropped, those missing between them; cut, "
        "delivered with a part of their bytes; failed, arrived without usable data. Frames that are cut or failed make "
        "the exit code 1. Ctrl-C ends the grab; what was taken is saved. Where frames go to standard output, the "
        "summary goes to standard error.");
    options.Example("vanto-cl grab 0 -n 10 -o images", "Save ten images as PNG");
    options.Example("vanto-cl grab 0 --set Width=640 --format tiff", "Set a feature, then save an image as TIFF");
    options.Example("vanto-cl grab 0 -n 0 --every 10 --duration 60 -o images", "Each tenth frame of a minute");
    options.Example("vanto-cl grab 0 -n 0 -o - --format y4m | ffmpeg -i - film.mkv", "A film, until Ctrl-C");
}

void GrabCommand::ReadOptions() {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    if (!m_durationText.empty())
        m_duration = DurationOption("--duration", m_durationText);
    if (m_countText.empty())
        m_countText = m_duration ? "0" : "1";
    m_count = NumberOption("--count", m_countText, 0, kMost);
    m_wishes.every = static_cast<std::uint64_t>(NumberOption("--every", m_everyText, 1, kMost));
    m_timeout = DurationOption("--timeout", m_timeoutText);
    m_wishes.waiting = static_cast<std::size_t>(NumberOption("--buffers", m_buffersText, 1, kMostBuffers));
}

ExitCode GrabCommand::Run(Output& output) {
    ReadOptions();
    std::vector<Assignment> settings;
    for (const std::string& word : m_settings)
        settings.push_back(ParseAssignment(word));
    const OpenDevice device(Device(), output);
    ApplySettings(device.Nodes(), settings);
    GrabTarget target(m_wishes, device, output);
    FrameCounts counts;
    Vanto::FrameStream stream = device.Camera().Stream(StreamOptions());
    std::optional<GrabProgress> progress(std::in_place, output, static_cast<std::uint64_t>(m_count));
    std::exception_ptr failure;
    try {
        Grab(stream, counts, target, *progress);
        stream.Stop();
    } catch (...) {
        failure = std::current_exception();
    }
    const double seconds = progress->Seconds();
    try {
        target.Finish();
    } catch (...) {
        failure = failure ? failure : std::current_exception();
    }
    progress.reset();
    target.PrintPreview();
    PrintSummary(output, counts, target, seconds);
    if (failure)
        std::rethrow_exception(failure);
    return counts.Cut() == 0 && counts.Failed() == 0 ? ExitCode::kDone : ExitCode::kFailed;
}

Vanto::StreamOptions GrabCommand::StreamOptions() const {
    Vanto::StreamOptions options;
    options.buffers = m_wishes.waiting;
    options.count = static_cast<std::uint64_t>(m_count);
    return options;
}

bool GrabCommand::IsOver(const GrabProgress& progress) const {
    return m_duration && progress.Seconds() * 1000.0 >= static_cast<double>(m_duration->count());
}

/// Nothing behind the last one.
std::optional<Vanto::Frame> GrabCommand::Next(Vanto::FrameStream& stream) const {
    ThrowIfInterrupted();
    try {
        return stream.Next(m_timeout);
    } catch (const Vanto::CameraTimeout&) {
        throw ToolError(
            fmt::format("no frame came within {}", DurationText(m_timeout)),
            "Is the image cable plugged in, and does the camera wait for a trigger? --timeout waits longer.");
    }
}

void GrabCommand::Grab(Vanto::FrameStream& stream, FrameCounts& counts, GrabTarget& target,
                       GrabProgress& progress) const {
    while (!IsOver(progress)) {
        const std::optional<Vanto::Frame> frame = Next(stream);
        if (!frame)
            return;
        counts.Update(stream.Counts());
        if (frame->Status() != Vanto::FrameStatus::kFailed && !target.Take(*frame, counts))
            return;
        progress.Show(counts);
    }
}

Json GrabCommand::Summary(const FrameCounts& counts, const GrabTarget& target, double seconds) const {
    Json json{{"Delivered", counts.Delivered()},  {"Dropped", counts.Dropped()}, {"Cut", counts.Cut()},
              {"Failed", counts.Failed()},        {"Bytes", counts.Bytes()},     {"Seconds", seconds},
              {"FrameSeconds", counts.Seconds()}, {"Saved", target.Saved()},     {"SaveSeconds", target.SaveSeconds()}};
    if (const FrameFiles* const files = target.Files()) {
        json["FirstFile"] = files->First().string();
        json["LastFile"] = files->Last().string();
    }
    return json;
}

void GrabCommand::PrintSummary(Output& output, const FrameCounts& counts, const GrabTarget& target,
                               double seconds) const {
    // Standard output has the frames.
    const auto print = [&](const std::string& text) { m_wishes.IsStream() ? output.Note(text) : output.Prose(text); };
    if (m_json)
        return m_wishes.IsStream() ? output.Note(ToText(Summary(counts, target, seconds)))
                                   : output.Line(ToText(Summary(counts, target, seconds)));
    const std::string rate = CameraRateText(counts);
    print(fmt::format("{} delivered, {} dropped, {} cut, {} failed in {}{}", counts.Delivered(), counts.Dropped(),
                      counts.Cut(), counts.Failed(),
                      DurationText(std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000.0))),
                      rate.empty() ? "" : ": " + rate));
    if (target.Files() != nullptr && target.Files()->Count() > 0)
        print(SavedText(*target.Files(), target.SaveSeconds()));
}

constexpr CommandEntry kGrabCommand{"grab", "Take images and save them", &Make<GrabCommand>};

}  // namespace tools
