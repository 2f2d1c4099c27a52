/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Fills a text with values and leaves out the parts that do not apply
 */

#include "camera/Template.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace MarlowSim {

namespace {

constexpr std::string_view kIf = "<!--if ";
constexpr std::string_view kEnd = "<!--end-->";
constexpr std::string_view kClose = "-->";
constexpr char kMark = '@';

std::string_view TakeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    return line;
}

void AppendFilled(std::string& out, std::string_view line,
                  const std::map<std::string, std::string, std::less<>>& values) {
    for (;;) {
        const std::size_t begin = line.find(kMark);
        const std::size_t end = begin == std::string_view::npos ? begin : line.find(kMark, begin + 1);
        if (end == std::string_view::npos) {
            out.append(line).append("\n");
            return;
        }
        const auto value = values.find(line.substr(begin + 1, end - begin - 1));
        if (value == values.end())
            throw std::logic_error("no value for " + std::string(line.substr(begin, end - begin + 1)));
        out.append(line.substr(0, begin)).append(value->second);
        line.remove_prefix(end + 1);
    }
}

}  // namespace

/**
 * \brief Fill a text
 * \param[in] text Lines; "@Name@" in one stands for a value, and the lines between "<!--if Name-->" and "<!--end-->",
 *            each on a line of its own and not nested, stay only when the condition holds
 * \throw std::logic_error The text names a value that there is not
 */
std::string FillTemplate(std::string_view text, const std::map<std::string, std::string, std::less<>>& values,
                         const std::set<std::string, std::less<>>& conditions) {
    std::string out;
    out.reserve(text.size());
    bool isTaken = true;
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        if (line.starts_with(kIf)) {
            isTaken = conditions.contains(line.substr(kIf.size(), line.find(kClose) - kIf.size()));
        } else if (line == kEnd) {
            isTaken = true;
        } else if (isTaken) {
            AppendFilled(out, line, values);
        }
    }
    return out;
}

}  // namespace MarlowSim
