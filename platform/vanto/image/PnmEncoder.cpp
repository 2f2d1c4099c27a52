/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Images as binary PGM and PPM
 */

#include <fmt/format.h>

#include <fstream>

#include "image/ImageEncoders.h"

namespace Vanto {

/**
 * \brief Write P5 or P6 with the greatest value that the bits allow; alpha is left out
 * \return Why the file can't be written
 */
std::error_code EncodePnm(const std::string& path, SampleRows& rows) {
    std::ofstream file(path, std::ios::binary);
    const bool isColour = rows.Channels() > 1;
    const std::string header =
        fmt::format("P{}\n{} {}\n{}\n", isColour ? 6 : 5, rows.Width(), rows.Height(), (1u << rows.Bits()) - 1);
    file.write(header.data(), static_cast<std::streamsize>(header.size()));
    std::string line;
    for (std::uint32_t row = 0; row < rows.Height() && file; ++row) {
        line.clear();
        const auto samples = rows.Read(row);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            if (i % rows.Channels() == 3)
                continue;
            if (rows.Bits() > 8)
                line += static_cast<char>(samples[i] >> 8);  // big-endian
            line += static_cast<char>(samples[i] & 0xFF);
        }
        file.write(line.data(), static_cast<std::streamsize>(line.size()));
    }
    file.close();
    return file ? std::error_code() : WriteError();
}

}  // namespace Vanto
