/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Settings of a camera as the text of a file
 */
#include "base/SettingsFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "base/Text.h"
#include "base/ValueText.h"

namespace base {

namespace {

/// Backslashes and control characters would break the line. A blank at either end would be lost.
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

/// The character behind a backslash, which is taken from the text.
std::optional<char> Unescape(std::string_view& text) {
    constexpr std::size_t kLength = 4;  // \xNN
    if (text.substr(0, 2) == "\\\\") {
        text.remove_prefix(2);
        return '\\';
    }
    const auto byte = text.substr(0, 2) == "\\x" ? BytesFromText(text.substr(2, 2)) : std::nullopt;
    if (!byte)
        return std::nullopt;
    text.remove_prefix(std::min(kLength, text.size()));
    return static_cast<char>(byte->front());
}

std::optional<std::string> Unescaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        if (text.front() != '\\') {
            result += text.front();
            text.remove_prefix(1);
        } else if (const auto character = Unescape(text)) {
            result += *character;
        } else {
            return std::nullopt;
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
            settings.push_back({std::move(name), std::move(text), m_selectors, m_line});
            return;
        }
        if (line.back() != ']')
            Refuse("']' is missing");
        Section(line.substr(1, line.size() - 2));
    }

    std::vector<Setting> settings;

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
        throw SettingsError(fmt::format("{}:{}: {}", m_fileName, m_line, why));
    }

    const std::string& m_fileName;
    std::uint64_t m_line = 0;
    SelectorState m_selectors;
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
 */
std::string SettingsText(const std::string& comment, const std::vector<Setting>& settings) {
    std::string text = "# " + Escaped(comment) + "\n";
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
 * \throw SettingsError A line is no setting; the text names it
 */
std::vector<Setting> ParseSettings(const std::string& fileName, std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark)
        text.remove_prefix(kByteOrderMark.size());
    Parser parser(fileName);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        parser.Line(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return std::move(parser.settings);
}

}  // namespace base
