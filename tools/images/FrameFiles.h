/* SPDX-License-Identifier: Apache-2.0 */
/*
 * FrameFiles: the files that grabbed frames are saved in
 */
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "vanto/GrabResult.h"
#include "vanto/ImageWriter.h"

namespace tools {

/// Writes frames into a folder, numbered from 1 in the order in which they come. Thread-bound.
class FrameFiles {
public:
    FrameFiles(const std::string& format, std::filesystem::path folder);

    void CheckPixelType(Vanto::EPixelType pixelType) const;
    void Save(const Vanto::GrabResult& result);

    std::uint64_t Count() const noexcept { return m_count; }
    const std::filesystem::path& First() const noexcept { return m_first; }
    const std::filesystem::path& Last() const noexcept { return m_last; }

private:
    std::optional<Vanto::EImageFileFormat> m_format;  // none: nothing is saved
    std::string m_word;
    std::filesystem::path m_folder;
    std::uint64_t m_count = 0;
    std::filesystem::path m_first;
    std::filesystem::path m_last;
};

/// Words for the formats, "none" among them.
inline constexpr const char* kFrameFormats[] = {"png", "pgm", "tiff", "raw", "none"};

}  // namespace tools
