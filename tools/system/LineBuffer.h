/* SPDX-License-Identifier: Apache-2.0 */
/*
 * LineBuffer: lines out of what comes in pieces
 */
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace tools {

class LineBuffer {
public:
    /// The next whole line without its end. \a read puts bytes into the space that it is given and returns their
    /// number; nothing when that is 0, or when a line is longer than any that is waited for.
    template <class Read>
    std::optional<std::string> Next(Read&& read) {
        for (;;) {
            if (auto line = Take())
                return line;
            std::array<char, 4096> space;
            const std::size_t count = m_pending.size() > kLongestLine ? 0 : read(std::span<char>(space));
            if (count == 0)
                return std::nullopt;
            m_pending.append(space.data(), count);
        }
    }

private:
    static constexpr std::size_t kLongestLine = 64 * 1024;

    std::optional<std::string> Take() {
        const std::size_t end = m_pending.find('\n');
        if (end == std::string::npos)
            return std::nullopt;
        std::string line = m_pending.substr(0, end);
        m_pending.erase(0, end + 1);
        return line;
    }

    std::string m_pending;
};

}  // namespace tools
