/* SPDX-License-Identifier: Apache-2.0 */
/*
 * GrabTarget: where the frames of a grab go
 */
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "images/FrameFiles.h"
#include "images/FrameLook.h"
#include "images/FrameSaver.h"
#include "images/FrameStream.h"

namespace tools {

class FrameCounts;
class OpenDevice;
class Output;

/// What a user wants to be done with frames.
struct GrabWishes {
    std::string output = ".";  ///< a folder, or - for standard output
    std::string format;        ///< one of kFrameFormats; empty for the usual one
    bool overwrite = false;
    bool statistics = false;
    bool preview = false;
    std::uint64_t every = 1;  ///< 2 takes each second frame
    std::size_t waiting = 8;  ///< frames that may wait to be saved

    bool IsStream() const { return output == "-"; }
};

/// Saves frames, or writes them to standard output, and looks at them. Thread-bound.
class GrabTarget {
public:
    /// \throw ToolError Format and output don't fit together (kUsage), or the folder can't be used
    GrabTarget(const GrabWishes& wishes, const OpenDevice& device, Output& output);

    /// False when nobody reads standard output any more.
    bool Take(const Vanto::Frame& frame, const FrameCounts& counts);
    /// Waits until all is saved; throws what went wrong with a file.
    void Finish();
    void PrintPreview();

    std::uint64_t Saved() const;
    double SaveSeconds() const;
    const FrameFiles* Files() const { return m_files ? &*m_files : nullptr; }

private:
    void CheckPixelFormat(const OpenDevice& device) const;
    void Look(const FrameImage& image, const FrameCounts& counts);

    const GrabWishes m_wishes;
    Output& m_output;
    Vanto::ImageNotes m_notes;
    std::optional<FrameFiles> m_files;
    std::optional<FrameSaver> m_saver;
    std::optional<FrameStream> m_stream;
    std::uint64_t m_taken = 0;
    std::chrono::steady_clock::time_point m_looked;
    std::vector<std::uint8_t> m_seen;  // the frame that was looked at last
    std::uint32_t m_seenWidth = 0;
    std::uint32_t m_seenHeight = 0;
};

}  // namespace tools
