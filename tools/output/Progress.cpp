/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Progress: shows that something goes on, and for how long
 */
#include "output/Progress.h"

#include <fmt/format.h>

#include <array>
#include <cstdio>

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
    std::fputs("\r\033[K", m_output.Err());
    std::fflush(m_output.Err());
}

std::chrono::milliseconds Progress::Elapsed() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - m_start);
}

void Progress::Run() {
    std::unique_lock guard(m_lock);
    for (std::size_t frame = 0; !m_changed.wait_for(guard, kPeriod, [this] { return m_ending; }); ++frame) {
        const std::string line =
            fmt::format("\r{} {} ({})\033[K", kFrames[frame % kFrames.size()], m_what, DurationText(Elapsed()));
        std::fputs(line.c_str(), m_output.Err());
        std::fflush(m_output.Err());
    }
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
