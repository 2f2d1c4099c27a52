/* SPDX-License-Identifier: Apache-2.0 */
/*
 * The file formats that images are written in
 */
#pragma once

#include <cerrno>
#include <string>
#include <system_error>

#include "image/SampleRows.h"

namespace Vanto {

std::string PnmHeader(const SampleRows& rows);
void PackPnmRow(SampleRows& rows, std::uint32_t row, std::string& line);

/// What the system said last. The encoders fail at the first write that does, so it is about that one.
inline std::error_code WriteError() noexcept {
    return errno != 0 ? std::error_code(errno, std::generic_category()) : std::make_error_code(std::errc::io_error);
}

// Each begins with an errno of 0 and returns why the file can't be written; no error when it is.
std::error_code EncodePng(const std::string& path, SampleRows& rows, const ImageNotes& notes);
std::error_code EncodePnm(const std::string& path, SampleRows& rows);
std::error_code EncodeTiff(const std::string& path, SampleRows& rows, const ImageNotes& notes);

/// Passes the bytes of a PNM image on, piece by piece, as long as the sink takes them.
template <class Sink>
void PassPnm(SampleRows& rows, Sink sink) {
    const std::string header = PnmHeader(rows);
    if (!sink(header.data(), header.size()))
        return;
    std::string line;
    for (std::uint32_t row = 0; row < rows.Height(); ++row) {
        PackPnmRow(rows, row, line);
        if (!sink(line.data(), line.size()))
            return;
    }
}

}  // namespace Vanto
