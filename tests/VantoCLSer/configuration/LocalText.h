/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Texts in the code page of the system
 */
#pragma once

#include <string>

namespace clser_test {

/// A text in UTF-8 as the local code page writes it.
std::string LocalText(const std::string& utf8);

}  // namespace clser_test
