/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Patterns with * and ?
 */
#pragma once

#include <string_view>

namespace base {

bool MatchesWildcard(std::string_view pattern, std::string_view text) noexcept;

}  // namespace base
