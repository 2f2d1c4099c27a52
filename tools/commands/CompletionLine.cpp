/* SPDX-License-Identifier: Apache-2.0 */
/*
 * CompletionLine: what is meant by the place in a command line where somebody presses TAB
 */
#include "commands/CompletionLine.h"

#include <algorithm>
#include <charconv>
#include <set>

namespace tools {

namespace {

constexpr std::string_view kSimulate = "--simulate";
constexpr int kSimulatedByDefault = 2;

const CommandModel* Find(const std::vector<CommandModel>& commands, const std::string& name) {
    const auto command = std::ranges::find(commands, name, &CommandModel::name);
    return command != commands.end() ? &*command : nullptr;
}

int NumberOf(std::string_view simulate) {
    int number = kSimulatedByDefault;
    if (const std::size_t sign = simulate.find('='); sign != std::string_view::npos)
        std::from_chars(simulate.data() + sign + 1, simulate.data() + simulate.size(), number);
    return number;
}

}  // namespace

CompletionLine::CompletionLine(const std::vector<CommandModel>& commands, const std::vector<std::string>& words)
    : m_commands(commands) {
    if (!words.empty())
        m_typed = words.back();
    for (std::size_t index = 0; index + 1 < words.size(); ++index)
        Skip(words[index]);
    Decide();
}

void CompletionLine::Skip(const std::string& word) {
    if (word.starts_with(kSimulate) && m_option == nullptr)
        m_simulated = NumberOf(word);
    else if (m_command != nullptr)
        SkipInCommand(word);
    else if (!word.starts_with('-'))
        m_command = Find(m_commands, m_name += (m_name.empty() ? "" : " ") + word);
}

void CompletionLine::SkipInCommand(const std::string& word) {
    if (m_option != nullptr) {
        m_option = nullptr;
    } else if (word.starts_with('-')) {
        const auto option = std::ranges::find_if(m_command->options, [&](const OptionModel& one) {
            return !one.placeholder.empty() && std::ranges::find(one.names, word) != one.names.end();
        });
        m_option = option != m_command->options.end() ? &*option : nullptr;
    } else {
        if (m_arguments < m_command->arguments.size() && m_command->arguments[m_arguments].name == "DEVICE")
            m_device = word;
        ++m_arguments;
    }
}

void CompletionLine::Decide() {
    if (m_command == nullptr)
        return OfferCommands();
    const std::vector<std::string>* words = nullptr;
    if (m_option != nullptr) {
        m_placeholder = m_option->placeholder;
        words = &m_option->words;
    } else if (m_typed.starts_with('-')) {
        return OfferOptions();
    } else if (!m_command->arguments.empty()) {
        const std::size_t last = m_command->arguments.size() - 1;
        const ArgumentModel& argument = m_command->arguments[std::min(m_arguments, last)];
        if (m_arguments > last && !argument.repeats)
            return;
        m_placeholder = argument.name;
        words = &argument.words;
    }
    if (words != nullptr)
        for (const std::string& word : *words)
            m_words.push_back({word, ""});
}

void CompletionLine::OfferCommands() {
    if (m_name.empty() && m_typed.starts_with('-')) {
        m_words = {{"--simulate", "Start simulated cameras for this command"},
                   {"--help", "Print the help"},
                   {"--version", "Print the version"}};
        return;
    }
    const std::string prefix = m_name.empty() ? "" : m_name + " ";
    std::set<std::string> offered;
    for (const CommandModel& command : m_commands) {
        if (!command.IsForPeople() || !command.name.starts_with(prefix))
            continue;
        const std::string rest = command.name.substr(prefix.size());
        const std::string word = rest.substr(0, rest.find(' '));
        if (offered.insert(word).second)
            m_words.push_back({word, word == rest ? command.summary : ""});
    }
}

void CompletionLine::OfferOptions() {
    for (const OptionModel& option : m_command->options)
        m_words.push_back({option.names.back(), option.help});
    m_words.push_back({"--help", "Print the help"});
}

}  // namespace tools
