/* SPDX-License-Identifier: Apache-2.0 */
/*
 * GrabProgress: shows how a grab goes on
 */
#include "images/GrabProgress.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

#include "images/FrameCounts.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/Text.h"
#include "system/Terminal.h"

namespace tools {

namespace {

constexpr std::chrono::milliseconds kBarPeriod{100};
constexpr std::chrono::seconds kLinePeriod{2};
constexpr std::uint64_t kBarLength = 12;
constexpr double kMegabyte = 1e6;

}  // namespace

GrabProgress::GrabProgress(Output& output, std::uint64_t frames)
    : m_output(output), m_frames(frames), m_start(std::chrono::steady_clock::now()), m_shown(m_start) {}

GrabProgress::~GrabProgress() {
    m_output.ShowStatus({});
}

double GrabProgress::Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
}

/// Shows the counts unless they were shown just now.
void GrabProgress::Show(const FrameCounts& counts) {
    const auto now = std::chrono::steady_clock::now();
    const bool isTerminal = m_output.ShowsProgress();
    if (now - m_shown < (isTerminal ? kBarPeriod : std::chrono::milliseconds(kLinePeriod)))
        return;
    m_shown = now;
    if (!isTerminal)
        return m_output.Note(Text(counts));
    m_output.ShowStatus(Bar(counts));
}

// A line that fills the terminal's last column would go on in the next one, and could not be written over.
std::string GrabProgress::Bar(const FrameCounts& counts) const {
    const auto columns = static_cast<std::size_t>(std::max(TerminalWidth(m_output.Err()), 2)) - 1;
    const std::string text = Text(counts);
    if (m_frames == 0)
        return Shortened(text, columns);
    const std::uint64_t done = std::min(kBarLength, (counts.Delivered() + counts.Failed()) * kBarLength / m_frames);
    const std::string bar = fmt::format("[{:#<{}}{:.<{}}] {}", "", done, "", kBarLength - done, text);
    return bar.size() <= columns ? bar : Shortened(text, columns);
}

std::string GrabProgress::Text(const FrameCounts& counts) const {
    const std::uint64_t done = counts.Delivered() + counts.Failed();
    if (m_frames == 0)
        return fmt::format("{} frames, {}", done, RateText(counts, Seconds()));
    const auto elapsed = std::chrono::milliseconds(static_cast<std::int64_t>(Seconds() * 1000.0));
    return fmt::format("{} of {} frames, {}, {}", done, m_frames, RateText(counts, Seconds()),
                       PartText(done, m_frames, Progress::Unit::kThings, elapsed));
}

/// The rate at which frames came; empty for fewer than two.
std::string CameraRateText(const FrameCounts& counts) {
    if (counts.Delivered() < 2 || counts.Seconds() <= 0.0)
        return {};
    const auto delivered = static_cast<double>(counts.Delivered());
    const double rate = (delivered - 1.0) / counts.Seconds();
    return fmt::format("{:.1f} frames/s, {:.1f} MB/s", rate,
                       rate * static_cast<double>(counts.Bytes()) / delivered / kMegabyte);
}

std::string RateText(const FrameCounts& counts, double seconds) {
    const double elapsed = std::max(seconds, 1e-9);
    return fmt::format("{:.1f} frames/s, {:.1f} MB/s", static_cast<double>(counts.Delivered()) / elapsed,
                       static_cast<double>(counts.Bytes()) / kMegabyte / elapsed);
}

}  // namespace tools
