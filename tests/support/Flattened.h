/* SPDX-License-Identifier: Apache-2.0 */
/*
 * For tests: descriptions as they are meant, whatever their layout
 */
#pragma once

#include <algorithm>
#include <string>

namespace test_support {

/// A text without line ends and what is before the first character of a line.
inline std::string Flattened(const std::string& text) {
    std::string flat;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::size_t first = std::min(text.find_first_not_of(" \t\r", at), end);
        flat += text.substr(first, end - first);
        at = end + 1;
    }
    return flat;
}

}  // namespace test_support
