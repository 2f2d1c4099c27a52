/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Progress: shows that something goes on, and for how long
 */
#include "output/Progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "output/Output.h"

namespace tools {

namespace {

constexpr std::chrono::milliseconds kPeriod{120};
constexpr std::array<const char*, 4> kFrames{"|", "/", "-", "\\"};

}  // namespace

Progress::Progress(Output& output, std::string what)
    : m_output(output), m_what(std::move(what)), m_start(std::chrono::steady_clock::now()) {
    if (output.ShowsProgress())
        m_thread = std::thread([this] { Run(); });
}

Progress::~Progress() {
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard guard(m_lock);
        m_ending = true;
    }
    m_changed.notify_all();
    m_thread.join();
    m_output.ShowStatus({});
}

std::chrono::milliseconds Progress::Elapsed() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - m_start);
}

void Progress::Say(std::string what) {
    const std::lock_guard guard(m_lock);
    m_what = std::move(what);
}

void Progress::SetPart(std::uint64_t done, std::uint64_t all, Unit unit) {
    const std::lock_guard guard(m_lock);
    m_done = done;
    m_all = all;
    m_unit = unit;
}

void Progress::Run() {
    std::unique_lock guard(m_lock);
    for (std::size_t frame = 0; !m_changed.wait_for(guard, kPeriod, [this] { return m_ending; }); ++frame)
        m_output.ShowStatus(fmt::format("{} {}", kFrames[frame % kFrames.size()], Line()));
}

std::string Progress::Line() const {
    if (m_all == 0)
        return fmt::format("{} ({})", m_what, DurationText(Elapsed()));
    return fmt::format("{}: {}", m_what, PartText(m_done, m_all, m_unit, Elapsed()));
}

/// "42%, 38 kB/s, 12.0 s left"; the time left is what the rest takes at the rate so far.
std::string PartText(std::uint64_t done, std::uint64_t all, Progress::Unit unit, std::chrono::milliseconds elapsed) {
    done = std::min(done, all);
    std::string text = fmt::format("{}%", all == 0 ? 0 : done * 100 / all);
    const double seconds = std::max(static_cast<double>(elapsed.count()), 1.0) / 1000.0;
    if (unit == Progress::Unit::kBytes)
        text += fmt::format(", {:.1f} kB/s", static_cast<double>(done) / seconds / 1000.0);
    if (done > 0)
        text += fmt::format(
            ", {} left",
            DurationText(std::chrono::milliseconds(static_cast<std::int64_t>(
                static_cast<double>(elapsed.count()) * static_cast<double>(all - done) / static_cast<double>(done)))));
    return text;
}

std::string DurationText(std::chrono::milliseconds duration) {
    constexpr std::int64_t kTick = 100;
    if (duration.count() < 10 * kTick)
        return fmt::format("{} ms", duration.count());
    const std::int64_t tenths = duration.count() / kTick;
    if (tenths < 600)
        return fmt::format("{}.{} s", tenths / 10, tenths % 10);
    return fmt::format("{} min {:02} s", tenths / 600, tenths / 10 % 60);
}

}  // namespace tools
