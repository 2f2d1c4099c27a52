/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts with '#' as tokens between '#'
 */
#pragma once

#include <string>
#include <string_view>

namespace base {

std::string EscapeToken(std::string_view text);
std::string UnescapeToken(std::string_view token);

}  // namespace base
