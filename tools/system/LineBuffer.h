/* SPDX-License-Identifier: Apache-2.0 */
/*
 * LineBuffer: lines out of what comes in pieces
 */
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tools {

class LineBuffer {
public:
    void Append(std::string_view piece) { m_pending += piece; }

    /// The next whole line without its end, which it takes away.
    std::optional<std::string> Take() {
        const std::size_t end = m_pending.find('\n');
        if (end == std::string::npos)
            return std::nullopt;
        std::string line = m_pending.substr(0, end);
        m_pending.erase(0, end + 1);
        return line;
    }

    /// Whether a line is longer than any that is waited for.
    bool IsTooLong() const noexcept { return m_pending.size() > kLongestLine; }

private:
    static constexpr std::size_t kLongestLine = 64 * 1024;

    std::string m_pending;
};

}  // namespace tools
