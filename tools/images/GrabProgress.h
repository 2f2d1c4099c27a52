/* SPDX-License-Identifier: Apache-2.0 */
/*
 * GrabProgress: shows how a grab goes on
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tools {

class FrameCounts;
class Output;

/// A bar on standard error while it lives where that is a terminal, elsewhere a line now and then. Thread-bound.
class GrabProgress {
public:
    /// \param[in] frames How many are to come; 0 for no end
    GrabProgress(Output& output, std::uint64_t frames);
    ~GrabProgress();
    GrabProgress(const GrabProgress&) = delete;
    GrabProgress& operator=(const GrabProgress&) = delete;

    void Show(const FrameCounts& counts);
    double Seconds() const;

private:
    std::string Bar(const FrameCounts& counts) const;
    std::string Text(const FrameCounts& counts) const;

    Output& m_output;
    std::uint64_t m_frames;
    std::chrono::steady_clock::time_point m_start;
    std::chrono::steady_clock::time_point m_shown;
};

std::string CameraRateText(const FrameCounts& counts);

/// "98.7 frames/s, 103.4 MB/s"; a megabyte has 1,000,000 bytes.
std::string RateText(const FrameCounts& counts, double seconds);

}  // namespace tools
