/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts from anywhere as one printable line
 */
#pragma once

#include <string>
#include <string_view>

namespace Vanto {

std::string EscapeControlCharacters(std::string_view text);

}  // namespace Vanto
