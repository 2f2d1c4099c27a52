/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Streams as a whole
 */
#include "base/Stream.h"

#include <array>

namespace base {

/**
 * \brief Read a stream to its end
 * \param[in] stream Its bad() tells afterwards that reading failed before the end
 * \param[in] most Bytes that are accepted. The size of a file is no guide: it may grow or shrink while it is read.
 * \return What was read; nothing when there is more than that
 */
std::optional<std::string> ReadAll(std::istream& stream, std::size_t most) {
    std::string text;
    std::array<char, 65536> block;
    while (stream.read(block.data(), block.size()) || stream.gcount() > 0) {
        const auto count = static_cast<std::size_t>(stream.gcount());
        if (count > most - text.size())
            return std::nullopt;
        text.append(block.data(), count);
    }
    return text;
}

}  // namespace base
