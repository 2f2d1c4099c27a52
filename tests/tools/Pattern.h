/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Patterns in what a program prints
 */
#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

namespace tools_test {

/// GoogleTest's own patterns know neither sets nor groups on Windows.
MATCHER_P(ContainsPattern, pattern, "contains the pattern " + testing::PrintToString(pattern)) {
    return std::regex_search(std::string(arg), std::regex(pattern));
}

}  // namespace tools_test
