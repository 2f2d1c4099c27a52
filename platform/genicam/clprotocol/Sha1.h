/* SPDX-License-Identifier: Apache-2.0 */
/*
 * SHA-1 of texts
 */
#pragma once

#include <string>
#include <string_view>

namespace CLProtocol {

/// SHA-1 as 40 lower-case hexadecimal digits.
std::string Sha1Of(std::string_view bytes);

}  // namespace CLProtocol
