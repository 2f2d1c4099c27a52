/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Environment variables in paths
 */

#include "Base/GCUtilities.h"

#include <string>

#include "EnvironmentVariable.h"

namespace GenICam {

namespace {

// One pass from left to right: what a variable holds is not expanded again, so a text can't make it run for ever.
std::string ExpandVariables(const std::string& text) {
    std::string result;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t open = text.find("$(", at);
        const std::size_t close = open == std::string::npos ? open : text.find(')', open);
        if (close == std::string::npos)
            break;
        result.append(text, at, open - at);
        result += EnvironmentVariable(text.substr(open + 2, close - open - 2));
        at = close + 1;
    }
    return result.append(text, at);
}

}  // namespace

void ReplaceEnvironmentVariables(gcstring& buffer, bool replaceBlankBy20) {
    std::string text = ExpandVariables(buffer.str());
    if (replaceBlankBy20) {
        for (std::size_t at = text.find(' '); at != std::string::npos; at = text.find(' ', at + 3))
            text.replace(at, 1, "%20");
    }
    buffer = gcstring(std::move(text));
}

}  // namespace GenICam
