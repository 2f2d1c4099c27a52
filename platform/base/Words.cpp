/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Likeness of words
 */
#include "base/Words.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/Text.h"

namespace base {

/// Insertions, deletions, replacements and swaps of neighbours that make one word of the other, case aside.
std::size_t EditDistance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> before(right.size() + 1), above(right.size() + 1), row(right.size() + 1);
    for (std::size_t column = 0; column <= right.size(); ++column)
        above[column] = column;
    for (std::size_t line = 1; line <= left.size(); ++line) {
        row[0] = line;
        for (std::size_t column = 1; column <= right.size(); ++column) {
            const char one = LowerCase(left[line - 1]);
            const char other = LowerCase(right[column - 1]);
            row[column] = std::min({above[column] + 1, row[column - 1] + 1, above[column - 1] + (one != other)});
            if (line > 1 && column > 1 && one == LowerCase(right[column - 2]) && LowerCase(left[line - 2]) == other)
                row[column] = std::min(row[column], before[column - 2] + 1);
        }
        std::swap(before, above);
        std::swap(above, row);
    }
    return above.back();
}

/**
 * \brief The word that was probably meant
 * \return The candidate with the fewest differences, at most a third of the word's letters (at least one); empty when
 *         none is that close
 */
std::string ClosestWord(std::string_view word, std::span<const std::string> candidates) {
    constexpr std::size_t kLongestWord = 64;
    if (word.empty() || word.size() > kLongestWord)
        return {};
    std::string closest;
    std::size_t limit = std::max<std::size_t>(word.size() / 3, 1) + 1;
    for (const std::string& candidate : candidates) {
        if (candidate.size() > kLongestWord)
            continue;
        const std::size_t distance = EditDistance(word, candidate);
        if (distance < limit) {
            limit = distance;
            closest = candidate;
        }
    }
    return closest;
}

}  // namespace base
