/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SHA-1, as the GenCP manifest names a description file
 */
#pragma once

#include <string>
#include <string_view>

namespace tools {

/// The SHA-1 of some bytes as 40 hexadecimal digits in lower case.
std::string Sha1(std::string_view bytes);

}  // namespace tools
