/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts within XML
 */
#pragma once

#include <string>
#include <string_view>

namespace base {

std::string XmlText(std::string_view text);

}  // namespace base
