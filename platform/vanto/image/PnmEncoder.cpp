/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Images as binary PGM and PPM
 */

#include <fmt/format.h>

#include <fstream>

#include "image/ImageEncoders.h"

namespace Vanto {

/// P5 or P6 with the greatest value that the bits allow.
std::string PnmHeader(const SampleRows& rows) {
    return fmt::format("P{}\n{} {}\n{}\n", rows.Channels() > 1 ? 6 : 5, rows.Width(), rows.Height(),
                       (1u << rows.Bits()) - 1);
}

/// A row as PNM has it: big-endian, alpha left out.
void PackPnmRow(SampleRows& rows, std::uint32_t row, std::string& line) {
    line.clear();
    const auto samples = rows.Read(row);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (i % rows.Channels() == 3)
            continue;
        if (rows.Bits() > 8)
            line += static_cast<char>(samples[i] >> 8);
        line += static_cast<char>(samples[i] & 0xFF);
    }
}

/**
 * \brief Write P5 or P6
 * \return Why the file can't be written
 */
std::error_code EncodePnm(const std::string& path, SampleRows& rows) {
    std::ofstream file(path, std::ios::binary);
    PassPnm(rows, [&](const char* bytes, std::size_t count) {
        return static_cast<bool>(file.write(bytes, static_cast<std::streamsize>(count)));
    });
    file.close();
    return file ? std::error_code() : WriteError();
}

}  // namespace Vanto
