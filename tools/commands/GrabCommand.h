/* SPDX-License-Identifier: Apache-2.0 */
/*
 * vanto-cl grab: takes images and saves them
 */
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "commands/Command.h"

namespace tools {

class Acquisition;
class FrameCounts;
class FrameFiles;
class GrabProgress;

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

}  // namespace tools
