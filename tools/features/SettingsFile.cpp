/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Settings of a camera as a file
 */
#include "features/SettingsFile.h"

#include <fmt/format.h>

#include <charconv>
#include <optional>

#include "error/ExitCode.h"
#include "output/Text.h"

namespace tools {

namespace {

constexpr int kHexadecimal = 16;

/// Backslashes and control characters would break the line or steer a terminal. A blank at either end would be lost.
std::string Escaped(std::string_view text) {
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const auto byte = static_cast<unsigned char>(text[index]);
        const bool isOuterBlank = byte == ' ' && (index == 0 || index + 1 == text.size());
        if (byte == '\\')
            result += "\\\\";
        else if (byte < 0x20 || byte == 0x7F || isOuterBlank)
            result += fmt::format("\\x{:02X}", byte);
        else
            result += text[index];
    }
    return result;
}

std::optional<std::string> Unescaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        if (text.front() != '\\') {
            result += text.front();
            text.remove_prefix(1);
        } else if (text.starts_with("\\\\")) {
            result += '\\';
            text.remove_prefix(2);
        } else {
            unsigned char byte = 0;
            const std::string_view digits = text.substr(0, 4).substr(std::min<std::size_t>(2, text.size()));
            const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, kHexadecimal);
            if (!text.starts_with("\\x") || digits.size() != 2 || error != std::errc() ||
                end != digits.data() + digits.size())
                return std::nullopt;
            result += static_cast<char>(byte);
            text.remove_prefix(4);
        }
    }
    return result;
}

class Parser {
public:
    explicit Parser(const std::string& fileName) : m_fileName(fileName) {}

    void Line(std::string_view line) {
        ++m_line;
        line = Trimmed(line);
        if (line.empty() || line.front() == '#')
            return;
        if (line.front() != '[') {
            auto [name, text] = Pair(line);
            m_settings.push_back({std::move(name), std::move(text), m_selectors, m_line});
            return;
        }
        if (line.back() != ']')
            Refuse("']' is missing");
        Section(line.substr(1, line.size() - 2));
    }

    std::vector<Setting> Take() { return std::move(m_settings); }

private:
    void Section(std::string_view list) {
        m_selectors.clear();
        while (!Trimmed(list).empty()) {
            const std::size_t comma = std::min(list.find(','), list.size());
            m_selectors.push_back(Pair(Trimmed(list.substr(0, comma))));
            list.remove_prefix(std::min(comma + 1, list.size()));
        }
    }

    std::pair<std::string, std::string> Pair(std::string_view text) const {
        const std::size_t sign = text.find('=');
        if (sign == std::string_view::npos || Trimmed(text.substr(0, sign)).empty())
            Refuse(fmt::format("'{}' is no NAME=VALUE", text));
        auto value = Unescaped(Trimmed(text.substr(sign + 1)));
        if (!value)
            Refuse("after a backslash stands another one, or x and two hexadecimal digits");
        return {std::string(Trimmed(text.substr(0, sign))), std::move(*value)};
    }

    [[noreturn]] void Refuse(const std::string& why) const {
        throw ToolError(fmt::format("{}:{}: {}", m_fileName, m_line, why));
    }

    const std::string& m_fileName;
    std::uint64_t m_line = 0;
    SelectorState m_selectors;
    std::vector<Setting> m_settings;
};

}  // namespace

/// "TriggerSelector=FrameStart", as between the brackets of a section; empty without selectors.
std::string SelectorText(const SelectorState& selectors) {
    std::string text;
    for (const auto& [name, value] : selectors)
        text += fmt::format("{}{}={}", text.empty() ? "" : ", ", name, Escaped(value));
    return text;
}

/**
 * \brief Settings as the text of a file
 *
 * A line is NAME=VALUE; a section in brackets says for which values of selectors its lines count. A backslash in a
 * value is written twice, control characters as \\xNN.
 *
 * \param[in] comments Lines to put before the settings
 */
std::string SettingsText(const std::vector<std::string>& comments, const std::vector<Setting>& settings) {
    std::string text;
    for (const std::string& comment : comments)
        text += "# " + Printable(comment) + "\n";
    SelectorState current;
    for (const Setting& setting : settings) {
        if (setting.selectors != current)
            text += fmt::format("\n[{}]\n", SelectorText(setting.selectors));
        current = setting.selectors;
        text += fmt::format("{}={}\n", setting.name, Escaped(setting.text));
    }
    return text;
}

/**
 * \brief The settings of a file's text, in their order
 * \param[in] fileName For messages
 * \throw ToolError A line is no setting; the text names it
 */
std::vector<Setting> ParseSettings(const std::string& fileName, std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    Parser parser(fileName);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        parser.Line(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parser.Take();
}

}  // namespace tools
