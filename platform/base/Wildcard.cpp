/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Patterns with * and ?
 */

#include "base/Wildcard.h"

namespace base {

/**
 * \brief Whether a whole text matches a pattern
 * \param[in] pattern * stands for any characters, also none, ? for exactly one; all others for themselves
 *
 * Only the last * is ever tried again, so the time is bounded by the product of the lengths.
 */
bool MatchesWildcard(std::string_view pattern, std::string_view text) noexcept {
    std::size_t inPattern = 0;
    std::size_t inText = 0;
    std::size_t star = std::string_view::npos;
    std::size_t textAtStar = 0;
    while (inText < text.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == '*') {
            star = inPattern++;
            textAtStar = inText;
        } else if (inPattern < pattern.size() && (pattern[inPattern] == '?' || pattern[inPattern] == text[inText])) {
            ++inPattern;
            ++inText;
        } else if (star != std::string_view::npos) {
            inPattern = star + 1;
            inText = ++textAtStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', inPattern) == std::string_view::npos;
}

}  // namespace base
